#include "platform/ole32.h"

#include "orvane/automation.h"
#include "platform/advapi32.h"
#include "platform/linux/names.h"

#include <algorithm>
#include <cstring>
#include <dlfcn.h>
#include <optional>
#include <string>
#include <sys/auxv.h>

namespace orvane::platform {

namespace {

constexpr auto kModuleMissing = static_cast<std::int32_t>(0x8007007E);
constexpr auto kNoEntryPoint = static_cast<std::int32_t>(0x800401F9);

/// The text of a key's default value, among the registered classes.
std::optional<std::u16string> registeredText(std::u16string path) {
    RegistryKey root = kHkeyClassesRoot;
    // A process with more rights than its user must not load what that user has registered.
    if (::getauxval(AT_SECURE) != 0) {
        root = kHkeyLocalMachine;
        path.insert(0, u"Software\\Classes\\");
    }
    RegistryKey key{};
    if (advapi32.RegOpenKeyExW(root, path, 0, kKeyQueryValue, key) != ResultCode::success) {
        return std::nullopt;
    }
    std::uint32_t type = kRegNone;
    std::vector<std::uint8_t> data;
    const ResultCode read = advapi32.RegQueryValueExW(key, u"", type, data);
    advapi32.RegCloseKey(key);
    if (read != ResultCode::success || type != kRegSz) {
        return std::nullopt;
    }
    std::u16string text(data.size() / sizeof(char16_t), u'\0');
    std::memcpy(text.data(), data.data(), text.size() * sizeof(char16_t));
    text.resize(std::min(text.find(u'\0'), text.size()));
    return text;
}

// Where each byte of the text "{00112233-4455-6677-8899-AABBCCDDEEFF}" has its two digits, in the
// order in which the bytes lie in memory.
constexpr std::size_t kDigits[16] = {7, 5, 3, 1, 12, 10, 17, 15, 20, 22, 25, 27, 29, 31, 33, 35};
constexpr std::u16string_view kForm = u"{00000000-0000-0000-0000-000000000000}";

std::optional<std::uint8_t> digitOf(char16_t unit) {
    if (unit >= u'0' && unit <= u'9') return static_cast<std::uint8_t>(unit - u'0');
    if (unit >= u'a' && unit <= u'f') return static_cast<std::uint8_t>(unit - u'a' + 10);
    if (unit >= u'A' && unit <= u'F') return static_cast<std::uint8_t>(unit - u'A' + 10);
    return std::nullopt;
}

std::optional<ClassIdBytes> classIdOf(std::u16string_view text) {
    if (text.size() != kForm.size()) return std::nullopt;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const bool fits = kForm[i] == u'0' ? digitOf(text[i]).has_value() : text[i] == kForm[i];
        if (!fits) return std::nullopt;
    }
    ClassIdBytes classId;
    for (std::size_t i = 0; i < classId.bytes.size(); ++i) {
        const std::uint8_t high = *digitOf(text[kDigits[i]]);
        classId.bytes[i] = static_cast<std::uint8_t>(high << 4 | *digitOf(text[kDigits[i] + 1]));
    }
    return classId;
}

std::u16string textOf(const ClassIdBytes& classId) {
    constexpr std::u16string_view kHexadecimal = u"0123456789ABCDEF";
    std::u16string text(kForm);
    for (std::size_t i = 0; i < classId.bytes.size(); ++i) {
        text[kDigits[i]] = kHexadecimal[classId.bytes[i] >> 4];
        text[kDigits[i] + 1] = kHexadecimal[classId.bytes[i] & 15];
    }
    return text;
}

std::int32_t classIdFromProgId(const std::u16string& progId, ClassIdBytes& classId) {
    // A backslash would lead to another key than the name's own.
    if (progId.empty() || progId.find(u'\\') != std::u16string::npos) {
        return kClassStringUnknown;
    }
    const std::optional<std::u16string> text = registeredText(progId + u"\\CLSID");
    if (!text) return kNoRegistration;
    const std::optional<ClassIdBytes> found = classIdOf(*text);
    if (!found) return kClassStringUnknown;
    classId = *found;
    return 0;
}

using GetClassObject = HRESULT (*)(REFCLSID classId, REFIID iid, void** object);

/// The entry point of a module for its class factories. A module that is loaded already, this one
/// among them, is not loaded again. It is never closed: nobody counts its objects.
std::int32_t entryOf(const std::string& path, GetClassObject& entry) {
    void* module = path.starts_with('/') ? ::dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL) : nullptr;
    if (module == nullptr) return kModuleMissing;
    entry = reinterpret_cast<GetClassObject>(::dlsym(module, "DllGetClassObject"));
    return entry == nullptr ? kNoEntryPoint : 0;
}

// Asked for late-bound calls first, as on Windows.
std::int32_t createWith(IClassFactory& factory, IUnknown*& object) {
    void* made = nullptr;
    HRESULT result = factory.CreateInstance(nullptr, IID_IDispatch, &made);
    if (result == E_NOINTERFACE) result = factory.CreateInstance(nullptr, IID_IUnknown, &made);
    object = SUCCEEDED(result) ? static_cast<IUnknown*>(made) : nullptr;
    return result;
}

std::int32_t createInstance(const ClassIdBytes& classId, IUnknown*& object) {
    object = nullptr;
    const std::optional<std::u16string> path =
        registeredText(u"CLSID\\" + textOf(classId) + u"\\InprocServer32");
    if (!path) return kClassNotRegistered;
    GetClassObject entry = nullptr;
    if (const std::int32_t missing = entryOf(utf8Text(*path), entry); missing < 0) return missing;
    CLSID id{};
    static_assert(sizeof(id) == sizeof(classId.bytes));
    std::memcpy(&id, classId.bytes.data(), sizeof(id));
    void* found = nullptr;
    const HRESULT result = entry(id, IID_IClassFactory, &found);
    if (FAILED(result)) return result;
    auto* factory = static_cast<IClassFactory*>(found);
    const std::int32_t created = createWith(*factory, object);
    factory->Release();
    return created;
}

std::int32_t stringFromGuid(const ClassIdBytes& classId, std::span<char16_t> text) {
    const std::u16string form = textOf(classId);
    if (text.size() <= form.size()) return 0;
    std::ranges::copy(form, text.begin());
    text[form.size()] = u'\0';
    return static_cast<std::int32_t>(form.size() + 1);
}

constexpr Ole32 boundTable() {
    Ole32 table;
    table.CLSIDFromProgID.bind<&classIdFromProgId>();
    table.CoCreateInstance.bind<&createInstance>();
    table.StringFromGUID2.bind<&stringFromGuid>();
    return table;
}
static_assert(allBound(boundTable()));

}  // namespace

constinit Ole32 ole32 = boundTable();

}  // namespace orvane::platform

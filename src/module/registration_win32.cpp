#include "module/registration_places.h"

#include "frame/automation/abi.h"
#include "platform/advapi32.h"

namespace orvane::automation {

namespace {

/// The marshaller that works from type libraries, for the older interface identifiers.
constexpr const char16_t* kAutomationMarshaler = u"{00020424-0000-0000-C000-000000000046}";

}  // namespace

std::vector<RegistrationPlace> registrationPlaces() {
    return {{platform::kHkeyClassesRoot, u""}};
}

// The rest is written by the system's automation library.
void addTypes(std::vector<RegistrationTree>& trees, const LibraryTable& library,
              const std::u16string&) {
    for (const ClassTable* table : library.classes) {
        for (const InterfaceAlias& alias : table->aliases) {
            trees.push_back({u"Interface\\" + guidText(alias.interfaceId),
                             {{u"", u"", asciiText(alias.name)},
                              {u"ProxyStubClsid", u"", kAutomationMarshaler},
                              {u"ProxyStubClsid32", u"", kAutomationMarshaler},
                              {u"TypeLib", u"", guidText(library.id)},
                              {u"TypeLib", u"Version", versionText(library)}}});
        }
    }
}

bool registerTypeLibrary(const std::u16string& path) {
    ITypeLib* library = nullptr;
    if (FAILED(LoadTypeLibEx(toOle(path.c_str()), REGKIND_NONE, &library))) return false;
    std::u16string file = path;
    const HRESULT status =
        RegisterTypeLib(library, reinterpret_cast<wchar_t*>(file.data()), nullptr);
    library->Release();
    return SUCCEEDED(status);
}

bool unregisterTypeLibrary(const LibraryTable& library) {
    // The system fails to remove a type library that isn't registered.
    platform::RegistryKey key{};
    const platform::ResultCode opened = platform::advapi32.RegOpenKeyExW(
        platform::kHkeyClassesRoot,
        u"TypeLib\\" + guidText(library.id) + u"\\" + versionText(library), 0,
        platform::kKeyQueryValue, key);
    if (opened != platform::ResultCode::success) return true;
    platform::advapi32.RegCloseKey(key);
    return SUCCEEDED(
        UnRegisterTypeLib(library.id, library.major, library.minor, LANG_NEUTRAL, SYS_WIN32));
}

}  // namespace orvane::automation

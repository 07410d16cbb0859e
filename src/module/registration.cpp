#include "module/registration.h"

#include "module/registration_places.h"
#include "platform/advapi32.h"
#include "platform/paths.h"
#include "platform/shlwapi.h"

#include <new>
#include <span>
#include <utility>

namespace orvane::automation {

namespace {

using platform::ResultCode;

constexpr HRESULT kSelfRegistrationOfTypeLibrary = static_cast<HRESULT>(0x80040200);
constexpr HRESULT kSelfRegistrationOfClasses = static_cast<HRESULT>(0x80040201);
constexpr ResultCode kAccessDenied{platform::kErrorAccessDenied};
constexpr ResultCode kNotFound{platform::kErrorFileNotFound};
constexpr ResultCode kNoTransactions{platform::kErrorNotSupported};

/// Changes of the registry that are made together, undone at its end unless they were committed.
/// Where the registry has no transactions they are made one by one.
class Transaction {
public:
    Transaction() : begun_(platform::registryTransactions.Begin()) {}
    ~Transaction() { rollback(); }
    Transaction(const Transaction&) = delete;
    Transaction& operator=(const Transaction&) = delete;

    /// Success, too, where there are no transactions.
    ResultCode begun() const { return begun_ == kNoTransactions ? ResultCode::success : begun_; }
    bool isMissing() const { return begun_ == kNoTransactions; }
    ResultCode commit() {
        const ResultCode code =
            isOpen_ ? platform::registryTransactions.Commit() : ResultCode::success;
        if (code == ResultCode::success) isOpen_ = false;
        return code;
    }
    void rollback() {
        if (std::exchange(isOpen_, false)) platform::registryTransactions.Rollback();
    }

private:
    ResultCode begun_;
    bool isOpen_ = begun_ == ResultCode::success;
};

std::u16string progIdOf(const LibraryTable& library, const ClassTable& table) {
    return asciiText(library.progIdPrefix) + u"." + asciiText(table.name);
}

void addClass(std::vector<RegistrationTree>& trees, const LibraryTable& library,
              const ClassTable& table, const std::u16string& path) {
    const std::u16string progId = progIdOf(library, table);
    const std::u16string classId = guidText(table.classId);
    RegistrationTree tree{u"CLSID\\" + classId,
                          {{u"", u"", progId},
                           {u"InprocServer32", u"", path},
                           {u"InprocServer32", u"ThreadingModel", u"Apartment"},
                           {u"VERSION", u"", versionText(library)},
                           {u"TypeLib", u"", guidText(library.id)},
                           {u"Programmable", u"", u""}}};
    const bool forHosts = table.instancing != Instancing::internal;
    if (forHosts) tree.values.push_back({u"ProgID", u"", progId});
    trees.push_back(std::move(tree));
    if (forHosts) trees.push_back({progId, {{u"", u"", progId}, {u"Clsid", u"", classId}}});
}

/// Everything that a registered library has in the registry.
std::vector<RegistrationTree> registrationTrees(const LibraryTable& library,
                                                const std::u16string& path) {
    std::vector<RegistrationTree> trees;
    for (const ClassTable* table : library.classes)
        addClass(trees, library, *table, path);
    addTypes(trees, library, path);
    return trees;
}

ResultCode write(const RegistrationPlace& place, const RegistrationTree& tree,
                 const RegistrationValue& value) {
    std::u16string path = place.path + tree.key;
    if (!value.subKey.empty()) path += u"\\" + value.subKey;
    platform::RegistryKey key{};
    platform::KeyDisposition disposition{};
    const ResultCode created = platform::advapi32.RegCreateKeyExW(
        place.root, path, 0, platform::kKeySetValue, key, disposition);
    if (created != ResultCode::success) return created;
    const auto* bytes = reinterpret_cast<const std::uint8_t*>(value.text.c_str());
    const ResultCode written = platform::advapi32.RegSetValueExW(
        key, value.name, platform::kRegSz,
        std::span(bytes, (value.text.size() + 1) * sizeof(char16_t)));
    platform::advapi32.RegCloseKey(key);
    return written;
}

ResultCode writeAll(const RegistrationPlace& place, const std::vector<RegistrationTree>& trees) {
    for (const RegistrationTree& tree : trees) {
        for (const RegistrationValue& value : tree.values) {
            const ResultCode written = write(place, tree, value);
            if (written != ResultCode::success) return written;
        }
    }
    return ResultCode::success;
}

bool isThere(const RegistrationPlace& place, const std::u16string& path) {
    platform::RegistryKey key{};
    const ResultCode opened = platform::advapi32.RegOpenKeyExW(place.root, place.path + path, 0,
                                                               platform::kKeyQueryValue, key);
    if (opened == ResultCode::success) platform::advapi32.RegCloseKey(key);
    return opened != kNotFound;
}

/// Whether nothing of the trees is left at the place.
bool removeAll(const RegistrationPlace& place, const std::vector<RegistrationTree>& trees) {
    bool removed = true;
    for (const RegistrationTree& tree : trees) {
        // Without rights the call may refuse what isn't there.
        if (isThere(place, tree.key)) {
            removed = platform::shlwapi.SHDeleteKeyW(place.root, place.path + tree.key) ==
                          ResultCode::success &&
                      removed;
        }
        // It stays when another version is registered below it.
        if (!tree.parent.empty()) {
            const std::u16string parent = place.path + tree.parent;
            platform::shlwapi.SHDeleteEmptyKeyA(place.root,
                                                std::string(parent.begin(), parent.end()));
        }
    }
    return removed;
}

}  // namespace

std::u16string guidText(REFGUID guid) {
    constexpr std::u16string_view kDigits = u"0123456789ABCDEF";
    std::u16string text = u"{";
    const auto add = [&text, kDigits](std::uint32_t value, int digits) {
        for (int shift = 4 * (digits - 1); shift >= 0; shift -= 4)
            text += kDigits[value >> shift & 15];
    };
    add(static_cast<std::uint32_t>(guid.Data1), 8);
    text += u'-';
    add(guid.Data2, 4);
    text += u'-';
    add(guid.Data3, 4);
    for (int i = 0; i < 8; ++i) {
        if (i == 0 || i == 2) text += u'-';
        add(guid.Data4[i], 2);
    }
    return text + u"}";
}

std::u16string asciiText(const char* text) {
    return {text, text + std::char_traits<char>::length(text)};
}

std::u16string versionText(const LibraryTable& library) {
    return asciiText((std::to_string(library.major) + "." + std::to_string(library.minor)).c_str());
}

HRESULT registerLibrary() try {
    const LibraryTable& library = libraryTable();
    const std::u16string path = platform::ownFileName();
    if (path.empty()) return kSelfRegistrationOfClasses;
    const std::vector<RegistrationTree> trees = registrationTrees(library, path);
    for (const RegistrationPlace& place : registrationPlaces()) {
        const bool hasTypes = registerTypeLibrary(path);
        Transaction transaction;
        ResultCode written = hasTypes ? transaction.begun() : kNotFound;
        if (written == ResultCode::success) written = writeAll(place, trees);
        if (written == ResultCode::success) written = transaction.commit();
        if (written == ResultCode::success) return S_OK;
        transaction.rollback();
        unregisterTypeLibrary(library);
        if (transaction.isMissing()) removeAll(place, trees);
        if (!hasTypes) return kSelfRegistrationOfTypeLibrary;
        if (written != kAccessDenied) break;
    }
    return kSelfRegistrationOfClasses;
} catch (const std::bad_alloc&) {
    return E_OUTOFMEMORY;
}

HRESULT unregisterLibrary() try {
    const LibraryTable& library = libraryTable();
    const std::vector<RegistrationTree> trees = registrationTrees(library, u"");
    bool removed = true;
    for (const RegistrationPlace& place : registrationPlaces()) {
        Transaction transaction;
        const bool done = transaction.begun() == ResultCode::success && removeAll(place, trees) &&
                          transaction.commit() == ResultCode::success;
        removed = done && removed;
    }
    if (!unregisterTypeLibrary(library)) return kSelfRegistrationOfTypeLibrary;
    return removed ? S_OK : kSelfRegistrationOfClasses;
} catch (const std::bad_alloc&) {
    return E_OUTOFMEMORY;
}

}  // namespace orvane::automation

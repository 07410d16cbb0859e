#include "platform/registry_operations.h"

#include "platform/linux/handle_table.h"
#include "platform/linux/registry_answer.h"
#include "platform/linux/registry_module.h"
#include "platform/linux/registry_texts.h"

#include <algorithm>
#include <mutex>
#include <new>
#include <utility>

namespace orvane::platform::registry {

namespace {

constexpr std::uint32_t kMaximumAllowed = 0x02000000;
constexpr std::uint32_t kGenericAll = 0x10000000;
constexpr std::uint32_t kGenericWrite = 0x40000000;
constexpr std::uint32_t kGenericRead = 0x80000000;
constexpr std::uint32_t kAllRights =
    kKeyQueryValue | kKeySetValue | kKeyCreateSubKey | kKeyEnumerateSubKeys;
/// Rights that change the key or what is in it, with those to delete it and to change who may.
constexpr std::uint32_t kWritingRights = kKeySetValue | kKeyCreateSubKey | 0x000D0000;

/// A predefined key without a store behind it: it is there and empty.
constexpr std::int32_t kEmptyRoot = -1;
constexpr std::int32_t kPerformanceRoot = -2;

/// An open key, predefined ones included.
struct Key {
    using Handle = RegistryKey;
    static constexpr HandleKind kKind = HandleKind::registryKey;

    std::int32_t root = kEmptyRoot;
    std::int64_t id = 0;
    std::u16string path{};
    std::uint32_t rights = kAllRights;
    /// What the last use of the handle left for the next one.
    std::mutex mutex{};
    RegistryAnswer answer{};

    RegistryAnswer takeAnswer() {
        const std::scoped_lock lock(mutex);
        return std::exchange(answer, {});
    }
    void keepAnswer(RegistryAnswer kept) {
        const std::scoped_lock lock(mutex);
        answer = std::move(kept);
    }

    OrvaneStoreKey inStore() const {
        return {root, id, reinterpret_cast<const std::uint16_t*>(path.data()),
                static_cast<std::uint32_t>(path.size())};
    }
};

OrvaneStoreName inStore(const RegistryName& name) {
    return {reinterpret_cast<const std::uint16_t*>(name.spelled.data()),
            reinterpret_cast<const std::uint16_t*>(name.folded.data()),
            static_cast<std::uint32_t>(name.spelled.size())};
}

bool isPredefined(RegistryKey key) {
    return key >= kHkeyClassesRoot && key <= kHkeyDynData;
}

std::int32_t rootOf(RegistryKey key) {
    if (key == kHkeyClassesRoot) return ORVANE_STORE_CLASSES;
    if (key == kHkeyCurrentUser) return ORVANE_STORE_USER;
    if (key == kHkeyLocalMachine) return ORVANE_STORE_MACHINE;
    return key == kHkeyPerformanceData ? kPerformanceRoot : kEmptyRoot;
}

std::shared_ptr<Key> findKey(RegistryKey key) {
    if (!isPredefined(key)) return findObject<Key>(key);
    auto found = std::make_shared<Key>();
    found->root = rootOf(key);
    return found;
}

std::uint32_t rightsOf(std::uint32_t access) {
    if ((access & (kMaximumAllowed | kGenericAll)) != 0) return kAllRights;
    std::uint32_t rights = access & kAllRights;
    if ((access & kGenericRead) != 0) rights |= kKeyQueryValue | kKeyEnumerateSubKeys;
    if ((access & kGenericWrite) != 0) rights |= kKeySetValue | kKeyCreateSubKey;
    return rights;
}

bool isForWriting(std::uint32_t access) {
    return (access & (kWritingRights | kGenericAll | kGenericWrite)) != 0;
}

/// Every call comes through here: it finds the key, and gives its right and the code of what
/// `inEmptyRoot` says for a key without a store. `body` gets the answer that the handle kept, too,
/// and puts one back when the next question may go on with it.
template <class Body>
ResultCode asking(RegistryKey handle, std::uint32_t right, std::uint32_t inEmptyRoot, Body&& body) {
    const std::uint32_t before = lastError();
    try {
        const std::shared_ptr<Key> key = findKey(handle);
        setLastError(before);
        if (key == nullptr) return ResultCode{kErrorInvalidHandle};
        if ((key->rights & right) != right) return ResultCode{kErrorAccessDenied};
        if (key->root == kPerformanceRoot) return ResultCode{kErrorInvalidHandle};
        if (key->root == kEmptyRoot) return ResultCode{inEmptyRoot};
        const OrvaneStoreTable* store = registryStore();
        if (store == nullptr) return ResultCode{kErrorModuleNotFound};
        return static_cast<ResultCode>(body(*key, *store, key->takeAnswer()));
    } catch (const std::bad_alloc&) {
        return ResultCode{kErrorNotEnoughMemory};
    }
}

/// The same for calls that neither need an answer nor give one.
template <class Body>
ResultCode onKey(RegistryKey handle, std::uint32_t right, std::uint32_t inEmptyRoot, Body&& body) {
    return asking(handle, right, inEmptyRoot,
                  [&](const Key& key, const OrvaneStoreTable& store, const RegistryAnswer&) {
                      return body(key, store);
                  });
}

/// A handle of the key at a path below another one.
std::uint32_t addKey(const Key& base, const RegistryName& path, std::int64_t id,
                     std::uint32_t access, RegistryKey& key) {
    const std::uint32_t before = lastError();
    auto found = std::make_shared<Key>();
    found->root = base.root;
    found->id = id;
    found->path = base.path;
    if (!found->path.empty() && !path.folded.empty()) found->path += u'\\';
    found->path += path.folded;
    found->rights = rightsOf(access);
    key = addHandle(std::move(found));
    const std::uint32_t failure = key == RegistryKey::none ? lastError() : kErrorSuccess;
    setLastError(before);
    return failure;
}

/// "" opens a predefined key itself, with nothing behind it as well.
ResultCode openEmptyRoot(RegistryKey root, const RegistryName& path, std::uint32_t access,
                         RegistryKey& key) {
    const std::shared_ptr<Key> base = findKey(root);
    if (!path.spelled.empty()) {
        return ResultCode{base->root == kPerformanceRoot ? kErrorInvalidHandle
                                                         : kErrorFileNotFound};
    }
    return ResultCode{addKey(*base, path, 0, access, key)};
}

ResultCode openKey(RegistryKey root, std::u16string_view subKey, std::uint32_t access,
                   RegistryKey& key) {
    key = RegistryKey::none;
    RegistryName path;
    if (const ResultCode bad = keyPath(subKey, path); bad != ResultCode::success) return bad;
    if (isPredefined(root) && rootOf(root) < 0) return openEmptyRoot(root, path, access, key);
    return onKey(root, 0, kErrorFileNotFound, [&](const Key& base, const OrvaneStoreTable& store) {
        const OrvaneStoreKey from = base.inStore();
        const OrvaneStoreName name = inStore(path);
        std::int64_t id = 0;
        const std::uint32_t failure = store.open(&from, &name, isForWriting(access) ? 1 : 0, &id);
        return failure != kErrorSuccess ? failure : addKey(base, path, id, access, key);
    });
}

ResultCode createKey(RegistryKey root, std::u16string_view subKey, std::uint32_t access,
                     RegistryKey& key, KeyDisposition& disposition) {
    key = RegistryKey::none;
    disposition = KeyDisposition::none;
    RegistryName path;
    if (const ResultCode bad = keyPath(subKey, path); bad != ResultCode::success) return bad;
    return onKey(root, 0, kErrorAccessDenied, [&](const Key& base, const OrvaneStoreTable& store) {
        const OrvaneStoreKey from = base.inStore();
        const OrvaneStoreName name = inStore(path);
        std::int64_t id = 0;
        int created = 0;
        RegistryAnswer::outdate();
        std::uint32_t failure =
            store.create(&from, &name, isForWriting(access) ? 1 : 0, &id, &created);
        if (failure == kErrorSuccess) failure = addKey(base, path, id, access, key);
        if (failure == kErrorSuccess) {
            disposition =
                created != 0 ? KeyDisposition::createdNewKey : KeyDisposition::openedExistingKey;
        }
        return failure;
    });
}

/// What a call takes from the store is handed to a function object.
template <class Function>
void takeBy(void* context, const std::uint16_t* name, std::uint32_t units, std::uint32_t type,
            const std::uint8_t* data, std::size_t size) {
    (*static_cast<Function*>(context))(
        std::u16string_view(reinterpret_cast<const char16_t*>(name), units), type,
        std::span(data, size));
}

/// Hands a value in the store to `function`.
template <class Function>
std::uint32_t queryStore(const Key& key, const OrvaneStoreTable& store, const RegistryName& name,
                         Function& function) {
    const OrvaneStoreKey in = key.inStore();
    const OrvaneStoreName named = inStore(name);
    return store.query(&in, &named, takeBy<Function>, &function);
}

ResultCode set(RegistryKey key, std::u16string_view name, std::uint32_t type,
               std::span<const std::uint8_t> data) {
    const RegistryName written = valueName(name);
    if (written.spelled.size() > kLongestValueName) return ResultCode{kErrorInvalidParameter};
    return onKey(key, kKeySetValue, kErrorAccessDenied,
                 [&](const Key& found, const OrvaneStoreTable& store) {
                     const OrvaneStoreKey in = found.inStore();
                     const OrvaneStoreName named = inStore(written);
                     RegistryAnswer::outdate();
                     return store.set(&in, &named, type, data.data(), data.size());
                 });
}

ResultCode removeValue(RegistryKey key, std::u16string_view name) {
    const RegistryName sought = valueName(name);
    if (sought.spelled.size() > kLongestValueName) return ResultCode{kErrorFileNotFound};
    return onKey(key, kKeySetValue, kErrorFileNotFound,
                 [&](const Key& found, const OrvaneStoreTable& store) {
                     const OrvaneStoreKey in = found.inStore();
                     const OrvaneStoreName named = inStore(sought);
                     RegistryAnswer::outdate();
                     return store.deleteValue(&in, &named);
                 });
}

/// Gives the name at a place of a list that the handle's answer has; true when it had the list.
template <class Function>
bool nextName(RegistryAnswer& answer,
              std::optional<RegistryAnswer::Names> RegistryAnswer::Lists::*list,
              std::uint32_t index, std::uint32_t& code, Function&& function) {
    const RegistryAnswer::Names* names = answer.names(list, index);
    if (names == nullptr) return false;
    code = kErrorNoMoreItems;
    if (index >= names->names.size()) return true;
    code = kErrorSuccess;
    function(std::u16string_view(names->names[index]), 0u, std::span<const std::uint8_t>());
    return true;
}

template <class Function>
ResultCode enumerateKey(RegistryKey key, std::uint32_t index, Function&& function) {
    return asking(
        key, kKeyEnumerateSubKeys, kErrorNoMoreItems,
        [&](Key& found, const OrvaneStoreTable& store, RegistryAnswer answer) {
            std::uint32_t code = kErrorSuccess;
            if (nextName(answer, &RegistryAnswer::Lists::subKeys, index, code, function)) {
                found.keepAnswer(std::move(answer));
                return code;
            }
            const OrvaneStoreKey in = found.inStore();
            return store.subKey(&in, index, takeBy<std::remove_reference_t<Function>>, &function);
        });
}

template <class Function>
ResultCode enumerateValue(RegistryKey key, std::uint32_t index, bool withData,
                          Function&& function) {
    return asking(key, kKeyQueryValue, kErrorNoMoreItems,
                  [&](Key& found, const OrvaneStoreTable& store, RegistryAnswer answer) {
                      std::uint32_t code = kErrorSuccess;
                      if (!withData &&
                          nextName(answer, &RegistryAnswer::Lists::values, index, code, function)) {
                          found.keepAnswer(std::move(answer));
                          return code;
                      }
                      const OrvaneStoreKey in = found.inStore();
                      return store.value(&in, index, withData ? 1 : 0,
                                         takeBy<std::remove_reference_t<Function>>, &function);
                  });
}

ResultCode removeTree(RegistryKey root, std::u16string_view subKey) {
    RegistryName path;
    if (const ResultCode bad = keyPath(subKey, path); bad != ResultCode::success) return bad;
    return onKey(root, 0, path.spelled.empty() ? kErrorSuccess : kErrorFileNotFound,
                 [&](const Key& base, const OrvaneStoreTable& store) {
                     const OrvaneStoreKey from = base.inStore();
                     const OrvaneStoreName name = inStore(path);
                     RegistryAnswer::outdate();
                     return store.deleteTree(&from, &name);
                 });
}

/// Copies a name with a closing NUL; false when there is no room for both.
bool copyName(std::u16string_view name, char* out, std::size_t room) {
    if (name.size() >= room) return false;
    const std::string ansi = narrowText(name);
    std::ranges::copy(ansi, out);
    out[ansi.size()] = '\0';
    return true;
}

}  // namespace

ResultCode openKeyA(RegistryKey root, const std::string& subKey, std::uint32_t,
                    std::uint32_t access, RegistryKey& key) {
    return openKey(root, wideText(subKey), access, key);
}

ResultCode createKeyA(RegistryKey root, const std::string& subKey, std::uint32_t,
                      std::uint32_t access, RegistryKey& key, KeyDisposition& disposition) {
    return createKey(root, wideText(subKey), access, key, disposition);
}

// As the platform does, a question without data that finds nothing gives the size 0. One that finds
// something keeps it for the question with data that follows.
ResultCode queryValueA(RegistryKey key, const std::string& name, std::uint32_t& type,
                       std::uint8_t* data, std::uint32_t& size) {
    const RegistryName sought = valueName(wideText(name));
    bool fits = true;
    RegistryAnswer kept;
    auto give = [&](std::u16string_view, std::uint32_t found, std::span<const std::uint8_t> bytes) {
        type = found;
        const std::size_t needed = isText(found) ? bytes.size() / 2 : bytes.size();
        fits = data == nullptr || needed <= size;
        size = static_cast<std::uint32_t>(needed);
        if (data == nullptr) {
            kept = RegistryAnswer(
                RegistryAnswer::Value{sought.folded, found, {bytes.begin(), bytes.end()}});
        } else if (fits && isText(found)) {
            std::ranges::copy(narrowTextIn(bytes), data);
        } else if (fits) {
            std::ranges::copy(bytes, data);
        }
    };
    if (sought.spelled.size() > kLongestValueName) {
        type = kRegNone;
        if (data == nullptr) size = 0;
        return ResultCode{kErrorFileNotFound};
    }
    const ResultCode result =
        asking(key, kKeyQueryValue, kErrorFileNotFound,
               [&](Key& found, const OrvaneStoreTable& store, const RegistryAnswer& answer) {
                   const auto* value = data == nullptr ? nullptr : answer.value(sought.folded);
                   if (value != nullptr) {
                       give({}, value->type, value->bytes);
                       return kErrorSuccess;
                   }
                   const std::uint32_t code = queryStore(found, store, sought, give);
                   found.keepAnswer(std::move(kept));
                   return code;
               });
    if (result == ResultCode{kErrorFileNotFound}) {
        type = kRegNone;
        if (data == nullptr) size = 0;
    }
    return fits ? result : ResultCode{kErrorMoreData};
}

ResultCode setValueA(RegistryKey key, const std::string& name, std::uint32_t type,
                     std::span<const std::uint8_t> data) {
    if (!isText(type)) return set(key, wideText(name), type, data);
    return set(key, wideText(name), type, keptText(data));
}

ResultCode deleteValueA(RegistryKey key, const std::string& name) {
    return removeValue(key, wideText(name));
}

namespace {

/// Adds a name that the store counts to one of the lists behind `context`.
template <std::optional<RegistryAnswer::Names> RegistryAnswer::Lists::*list>
void addName(void* context, const std::uint16_t* name, std::uint32_t units, std::uint32_t,
             const std::uint8_t*, std::size_t) {
    (static_cast<RegistryAnswer::Lists*>(context)->*list)
        ->names.emplace_back(reinterpret_cast<const char16_t*>(name), units);
}

}  // namespace

// Keeps the names that it counts for the walk over them that follows.
ResultCode queryInfoKeyA(RegistryKey key, KeyInformation& information) {
    information = {};
    return asking(key, kKeyQueryValue, kErrorSuccess,
                  [&](Key& found, const OrvaneStoreTable& store, const RegistryAnswer&) {
                      RegistryAnswer::Lists lists;
                      lists.values.emplace();
                      if ((found.rights & kKeyEnumerateSubKeys) != 0) lists.subKeys.emplace();
                      const OrvaneStoreTake takeSubKey =
                          lists.subKeys ? addName<&RegistryAnswer::Lists::subKeys> : nullptr;
                      const OrvaneStoreKey in = found.inStore();
                      OrvaneStoreInformation kept{};
                      const std::uint32_t code = store.information(
                          &in, &kept, takeSubKey, addName<&RegistryAnswer::Lists::values>, &lists);
                      information = {kept.subKeys, kept.longestSubKey, kept.values,
                                     kept.longestValueName,
                                     std::max(kept.longestText / 2, kept.longestOther)};
                      if (code == kErrorSuccess) found.keepAnswer(RegistryAnswer(std::move(lists)));
                      return code;
                  });
}

ResultCode enumKeyA(RegistryKey key, std::uint32_t index, std::span<char> name) {
    bool fits = true;
    const ResultCode result = enumerateKey(
        key, index, [&](std::u16string_view found, std::uint32_t, std::span<const std::uint8_t>) {
            fits = copyName(found, name.data(), name.size());
        });
    return fits ? result : ResultCode{kErrorMoreData};
}

ResultCode enumValueA(RegistryKey key, std::uint32_t index, char* name, std::uint32_t& size) {
    bool fits = true;
    const ResultCode result = enumerateValue(
        key, index, false,
        [&](std::u16string_view found, std::uint32_t, std::span<const std::uint8_t>) {
            fits = copyName(found, name, size);
            if (fits) size = static_cast<std::uint32_t>(found.size());
        });
    return fits ? result : ResultCode{kErrorMoreData};
}

ResultCode closeKey(RegistryKey key) {
    if (isPredefined(key)) return ResultCode::success;
    const std::uint32_t before = lastError();
    const bool wasOpen = removeHandle<Key>(key) != nullptr;
    setLastError(before);
    return wasOpen ? ResultCode::success : ResultCode{kErrorInvalidHandle};
}

ResultCode openKeyW(RegistryKey root, const std::u16string& subKey, std::uint32_t,
                    std::uint32_t access, RegistryKey& key) {
    return openKey(root, subKey, access, key);
}

ResultCode createKeyW(RegistryKey root, const std::u16string& subKey, std::uint32_t,
                      std::uint32_t access, RegistryKey& key, KeyDisposition& disposition) {
    return createKey(root, subKey, access, key, disposition);
}

ResultCode queryValueW(RegistryKey key, const std::u16string& name, std::uint32_t& type,
                       std::vector<std::uint8_t>& data) {
    type = kRegNone;
    data.clear();
    const RegistryName sought = valueName(name);
    if (sought.spelled.size() > kLongestValueName) return ResultCode{kErrorFileNotFound};
    auto give = [&](std::u16string_view, std::uint32_t kept, std::span<const std::uint8_t> bytes) {
        type = kept;
        data.assign(bytes.begin(), bytes.end());
    };
    return onKey(key, kKeyQueryValue, kErrorFileNotFound,
                 [&](const Key& found, const OrvaneStoreTable& store) {
                     return queryStore(found, store, sought, give);
                 });
}

ResultCode setValueW(RegistryKey key, const std::u16string& name, std::uint32_t type,
                     std::span<const std::uint8_t> data) {
    return set(key, name, type, data);
}

ResultCode deleteValueW(RegistryKey key, const std::u16string& name) {
    return removeValue(key, name);
}

ResultCode enumKeyW(RegistryKey key, std::uint32_t index, std::u16string& name) {
    name.clear();
    return enumerateKey(key, index,
                        [&](std::u16string_view found, std::uint32_t,
                            std::span<const std::uint8_t>) { name = found; });
}

ResultCode enumValueW(RegistryKey key, std::uint32_t index, std::u16string& name,
                      std::uint32_t& type, std::vector<std::uint8_t>& data) {
    name.clear();
    data.clear();
    type = kRegNone;
    return enumerateValue(
        key, index, true,
        [&](std::u16string_view found, std::uint32_t kept, std::span<const std::uint8_t> bytes) {
            name = found;
            type = kept;
            data.assign(bytes.begin(), bytes.end());
        });
}

ResultCode deleteEmptyKeyA(RegistryKey root, const std::string& subKey) {
    RegistryName path;
    const ResultCode bad = keyPath(wideText(subKey), path);
    if (bad != ResultCode::success) return bad;
    return onKey(root, 0, path.spelled.empty() ? kErrorAccessDenied : kErrorFileNotFound,
                 [&](const Key& base, const OrvaneStoreTable& store) {
                     const OrvaneStoreKey from = base.inStore();
                     const OrvaneStoreName name = inStore(path);
                     RegistryAnswer::outdate();
                     return store.deleteEmpty(&from, &name);
                 });
}

ResultCode deleteTreeA(RegistryKey root, const std::string& subKey) {
    return removeTree(root, wideText(subKey));
}

ResultCode deleteTreeW(RegistryKey root, const std::u16string& subKey) {
    return removeTree(root, subKey);
}

namespace {

template <class Step>
ResultCode inTransaction(Step&& step) {
    const OrvaneStoreTable* store = registryStore();
    if (store == nullptr) return ResultCode{kErrorModuleNotFound};
    RegistryAnswer::outdate();
    return static_cast<ResultCode>(step(*store));
}

}  // namespace

ResultCode beginTransaction() {
    return inTransaction([](const OrvaneStoreTable& store) { return store.begin(); });
}

ResultCode commitTransaction() {
    return inTransaction([](const OrvaneStoreTable& store) {
        std::uint32_t committed = 0;
        return store.commit(&committed);
    });
}

ResultCode rollbackTransaction() {
    return inTransaction([](const OrvaneStoreTable& store) { return store.rollback(); });
}

}  // namespace orvane::platform::registry

#include "platform/linux/autostart/store.h"

#include "platform/linux/autostart/files.h"
#include "platform/linux/registry_texts.h"
#include "platform/registry.h"

#include <algorithm>
#include <cstring>
#include <memory>
#include <new>
#include <pthread.h>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace orvane::platform::autostart {

namespace {

constexpr std::u16string_view kRunKey = u"software\\microsoft\\windows\\currentversion\\run";

OrvaneStoreTable values;

using ChangeList = std::unique_ptr<std::vector<Change>>;

/// The changes of entries that wait for the end of the thread's transaction, gone with the thread.
/// They lie under a key of the system: a thread's object with a destructor of its own would keep
/// the library loaded for as long as the thread lives.
class Waiting {
public:
    Waiting() : isMade_(::pthread_key_create(&key_, drop) == 0) {}
    ~Waiting() {
        if (isMade_) ::pthread_key_delete(key_);
    }
    Waiting(const Waiting&) = delete;
    Waiting& operator=(const Waiting&) = delete;

    /// Null when the thread has no transaction.
    std::vector<Change>* get() const {
        return isMade_ ? static_cast<std::vector<Change>*>(::pthread_getspecific(key_)) : nullptr;
    }
    /// Puts another list in the place of the thread's own, which is given back.
    bool replace(ChangeList& changes) const {
        std::vector<Change>* former = get();
        if (!isMade_ || ::pthread_setspecific(key_, changes.get()) != 0) return false;
        changes.release();
        changes.reset(former);
        return true;
    }
    ChangeList take() const {
        ChangeList changes;
        replace(changes);
        return changes;
    }

private:
    static void drop(void* changes) { delete static_cast<std::vector<Change>*>(changes); }

    pthread_key_t key_ = 0;
    bool isMade_;
} waiting;

std::u16string_view view(const std::uint16_t* units, std::uint32_t count) {
    return {reinterpret_cast<const char16_t*>(units), count};
}

// Paths are folded, but to which case is the store's affair.
bool sameFolded(std::u16string_view path, std::u16string_view lower) {
    if (path.size() != lower.size()) {
        return false;
    }
    for (std::size_t i = 0; i < path.size(); ++i) {
        const char16_t unit = path[i];
        const bool isUpper = unit >= u'A' && unit <= u'Z';
        if ((isUpper ? static_cast<char16_t>(unit + 32) : unit) != lower[i]) {
            return false;
        }
    }
    return true;
}

bool hasEntries(std::int32_t root) {
    return root == ORVANE_STORE_USER || root == ORVANE_STORE_MACHINE;
}

Scope scopeOf(std::int32_t root) {
    return root == ORVANE_STORE_USER ? Scope::user : Scope::machine;
}

bool isRunKey(const OrvaneStoreKey& key) {
    return hasEntries(key.root) && sameFolded(view(key.path, key.units), kRunKey);
}

/// Whether a path below `base` is the run key's.
enum class Way : std::uint8_t { elsewhere, runKey, aboveRunKey };

Way wayOf(const OrvaneStoreKey& base, const OrvaneStoreName& path) {
    if (!hasEntries(base.root)) {
        return Way::elsewhere;
    }
    std::u16string whole(view(base.path, base.units));
    whole += whole.empty() || path.units == 0 ? u"" : u"\\";
    whole += view(path.folded, path.units);
    if (whole.size() > kRunKey.size() || !sameFolded(whole, kRunKey.substr(0, whole.size()))) {
        return Way::elsewhere;
    }
    const std::u16string_view rest = kRunKey.substr(whole.size());
    if (rest.empty()) {
        return Way::runKey;
    }
    return whole.empty() || rest.starts_with(u'\\') ? Way::aboveRunKey : Way::elsewhere;
}

/// The units of a text value up to its first NUL; nothing for values of other types.
std::u16string commandLine(std::uint32_t type, const std::uint8_t* data, std::size_t size) {
    if (type != kRegSz && type != kRegExpandSz) {
        return {};
    }
    std::u16string text(size / 2, u'\0');
    if (!text.empty()) {
        std::memcpy(text.data(), data, text.size() * 2);
    }
    return text.substr(0, text.find(u'\0'));
}

using Code = std::uint32_t;

template <class Body>
Code guarded(Body&& body) {
    try {
        return body();
    } catch (const std::bad_alloc&) {
        return kErrorNotEnoughMemory;
    }
}

struct RunValue {
    std::u16string name;
    std::u16string commandLine;
};

/// Hands all values under the run key of a root to a function.
template <class Function>
Code forEachValue(std::int32_t root, Function&& function) {
    registry::RegistryName path;
    registry::keyPath(kRunKey, path);
    const OrvaneStoreKey base{root, 0, nullptr, 0};
    const auto units = [](const std::u16string& text) {
        return reinterpret_cast<const std::uint16_t*>(text.data());
    };
    const OrvaneStoreName name{units(path.spelled), units(path.folded),
                               static_cast<std::uint32_t>(path.folded.size())};
    OrvaneStoreKey key{root, 0, name.folded, name.units};
    if (const Code code = values.open(&base, &name, 0, &key.id); code != kErrorSuccess) {
        return code == kErrorFileNotFound ? kErrorSuccess : code;
    }
    RunValue found;
    const OrvaneStoreTake take = [](void* context, const std::uint16_t* spelled,
                                    std::uint32_t count, std::uint32_t type,
                                    const std::uint8_t* data, std::size_t size) {
        *static_cast<RunValue*>(context) = {std::u16string(view(spelled, count)),
                                            commandLine(type, data, size)};
    };
    for (std::uint32_t index = 0;; ++index) {
        const Code code = values.value(&key, index, 1, take, &found);
        if (code != kErrorSuccess) {
            return code == kErrorNoMoreItems ? kErrorSuccess : code;
        }
        function(std::as_const(found));
    }
}

/// Ends the changes of a root's entries in the middle of which a process was killed: each becomes
/// what goes with the value that is stored. Those that are changed now become that in any case.
Code settleInterrupted(std::int32_t root, const std::vector<Change>& changes) {
    const Scope scope = scopeOf(root);
    std::vector<std::string> names = interruptedEntries(scope);
    for (const Change& change : changes) {
        if (change.scope == scope) {
            std::erase(names, entryName(scope, change.foldedName));
        }
    }
    if (names.empty()) {
        return kErrorSuccess;
    }
    const Code code = forEachValue(root, [&](const RunValue& value) {
        const std::string name = entryName(scope, registry::valueName(value.name).folded);
        if (std::erase(names, name) != 0) {
            settleInterrupted(scope, name, entryText(value.name, value.commandLine, isProgram));
        }
    });
    if (code == kErrorSuccess) {
        for (const std::string& name : names) {
            settleInterrupted(scope, name, {});
        }
    }
    return code;
}

/// Makes the changes of entries and ends the transaction of the values, with success only when both
/// are done.
Code commitWith(std::vector<Change> changes, std::uint32_t& committed) {
    Code code = kErrorSuccess;
    for (const std::int32_t root : {ORVANE_STORE_USER, ORVANE_STORE_MACHINE}) {
        const bool isChanged = std::ranges::any_of(
            changes, [&](const Change& change) { return change.scope == scopeOf(root); });
        if (isChanged && code == kErrorSuccess) {
            code = guarded([&] { return settleInterrupted(root, changes); });
        }
    }
    Changes entries(std::move(changes));
    if (code == kErrorSuccess) {
        code = guarded([&] { return static_cast<Code>(entries.apply()); });
    }
    committed = 0;
    if (code == kErrorSuccess) {
        code = values.commit(&committed);
    } else {
        values.rollback();
    }
    for (const std::int32_t root : {ORVANE_STORE_USER, ORVANE_STORE_MACHINE}) {
        if ((committed >> root & 1) != 0) {
            entries.settle(scopeOf(root));
        }
    }
    entries.undo();
    return code;
}

/// Runs a change of values in a transaction together with the changes of entries that `change`
/// tells when it succeeds. In a transaction of the caller's the entries wait for its end.
template <class Action>
Code together(Action&& change) {
    std::vector<Change> changes;
    if (std::vector<Change>* list = waiting.get()) {
        const Code code = change(changes);
        if (code == kErrorSuccess) {
            list->insert(list->end(), changes.begin(), changes.end());
        }
        return code;
    }
    if (const Code code = values.begin(); code != kErrorSuccess) {
        return code;
    }
    Code code = kErrorNotEnoughMemory;
    try {
        code = change(changes);
    } catch (const std::bad_alloc&) {
        // As a failure.
    }
    if (code != kErrorSuccess) {
        values.rollback();
        return code;
    }
    std::uint32_t committed = 0;
    return commitWith(std::move(changes), committed);
}

Code set(const OrvaneStoreKey* key, const OrvaneStoreName* name, std::uint32_t type,
         const std::uint8_t* data, std::size_t size) {
    if (!isRunKey(*key)) {
        return values.set(key, name, type, data, size);
    }
    return guarded([&] {
        return together([&](std::vector<Change>& changes) {
            changes.push_back({scopeOf(key->root), std::u16string(view(name->folded, name->units)),
                               entryText(view(name->spelled, name->units),
                                         commandLine(type, data, size), isProgram)});
            return values.set(key, name, type, data, size);
        });
    });
}

// Where there is no value, an entry may have been left by a process that was killed before it could
// commit the value. It goes; the answer is that there was no value.
Code deleteValue(const OrvaneStoreKey* key, const OrvaneStoreName* name) {
    if (!isRunKey(*key)) {
        return values.deleteValue(key, name);
    }
    return guarded([&] {
        bool isAbsent = false;
        const Code code = together([&](std::vector<Change>& changes) {
            if (const Code failure = values.claim(key->root); failure != kErrorSuccess) {
                return failure;
            }
            changes.push_back(
                {scopeOf(key->root), std::u16string(view(name->folded, name->units)), {}});
            const Code deleted = values.deleteValue(key, name);
            isAbsent = deleted == kErrorFileNotFound;
            return isAbsent ? kErrorSuccess : deleted;
        });
        return isAbsent ? kErrorFileNotFound : code;
    });
}

/// Adds the removal of the entries of all values under the run key of a root.
Code removeAll(std::int32_t root, std::vector<Change>& changes) {
    return forEachValue(root, [&](const RunValue& value) {
        changes.push_back({scopeOf(root), registry::valueName(value.name).folded, {}});
    });
}

/// Deletes keys, and with the run key the entries of its values: of all, so nobody may add one from
/// the moment in which they are listed.
template <class Delete>
Code deleteKeys(std::int32_t root, Delete&& deletion) {
    return guarded([&] {
        return together([&](std::vector<Change>& changes) {
            Code code = values.claim(root);
            if (code == kErrorSuccess) {
                code = removeAll(root, changes);
            }
            return code == kErrorSuccess ? deletion() : code;
        });
    });
}

Code deleteEmpty(const OrvaneStoreKey* base, const OrvaneStoreName* path) {
    if (wayOf(*base, *path) != Way::runKey) {
        return values.deleteEmpty(base, path);
    }
    return deleteKeys(base->root, [&] { return values.deleteEmpty(base, path); });
}

Code deleteTree(const OrvaneStoreKey* base, const OrvaneStoreName* path) {
    if (wayOf(*base, *path) == Way::elsewhere) {
        return values.deleteTree(base, path);
    }
    return deleteKeys(base->root, [&] { return values.deleteTree(base, path); });
}

Code begin() {
    ChangeList changes(new (std::nothrow) std::vector<Change>);
    if (changes == nullptr) {
        return kErrorNotEnoughMemory;
    }
    if (const Code code = values.begin(); code != kErrorSuccess) {
        return code;
    }
    // One that a fork or a failure left behind is of no transaction any more.
    if (waiting.replace(changes)) {
        return kErrorSuccess;
    }
    values.rollback();
    return kErrorNotEnoughMemory;
}

Code commit(std::uint32_t* committed) {
    *committed = 0;
    const ChangeList changes = waiting.take();
    return changes ? commitWith(std::move(*changes), *committed) : values.commit(committed);
}

Code rollback() {
    waiting.take();
    return values.rollback();
}

OrvaneStoreTable over(const OrvaneStoreTable& store) {
    values = store;
    OrvaneStoreTable table = store;
    table.set = set;
    table.deleteValue = deleteValue;
    table.deleteEmpty = deleteEmpty;
    table.deleteTree = deleteTree;
    table.begin = begin;
    table.commit = commit;
    table.rollback = rollback;
    return table;
}

}  // namespace

const OrvaneStoreTable* withEntries(const OrvaneStoreTable& store) {
    static const OrvaneStoreTable table = over(store);
    return &table;
}

}  // namespace orvane::platform::autostart

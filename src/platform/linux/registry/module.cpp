#include "platform/linux/registry/classes.h"

#include <algorithm>
#include <atomic>
#include <mutex>
#include <new>
#include <pthread.h>
#include <unistd.h>
#include <utility>

namespace orvane::store {

namespace {

/// The databases of one process. One call at a time is in them.
struct Store {
    std::mutex mutex;
    Hive user{userPlace, Database::Journal::log};
    Hive machine{machinePlace, Database::Journal::rollback};
    Classes classes{user, machine};
    pid_t process = ::getpid();
    Store* former = nullptr;
};

constinit std::atomic<Store*> current = nullptr;
Code endTransaction(Store* all, std::uint32_t* committed);

/// The store that a thread with an open transaction holds for its length. A thread that ends within
/// one takes it back: nobody else could, and all others would wait for ever.
class HeldStore {
public:
    constexpr HeldStore() = default;
    ~HeldStore() { endTransaction(store_, nullptr); }
    HeldStore(const HeldStore&) = delete;
    HeldStore& operator=(const HeldStore&) = delete;

    bool is(const Store* all) const { return store_ == all; }
    void hold(Store* all) { store_ = all; }
    Store* letGo() { return std::exchange(store_, nullptr); }

private:
    Store* store_ = nullptr;
};

constinit thread_local HeldStore inTransactionOf;

/// No thread is cancelled while this lives: a database that is left in the middle of a call is of
/// no use to any other.
class NotCancelled {
public:
    NotCancelled() { ::pthread_setcancelstate(PTHREAD_CANCEL_DISABLE, &former_); }
    ~NotCancelled() { ::pthread_setcancelstate(former_, nullptr); }
    NotCancelled(const NotCancelled&) = delete;
    NotCancelled& operator=(const NotCancelled&) = delete;

private:
    int former_ = PTHREAD_CANCEL_ENABLE;
};

/// The store of this process. One that came with a fork which nobody told us of is left alone:
/// to close it would end what the parent does with its files.
Store& store() {
    Store* found = current.load();
    while (found == nullptr || found->process != ::getpid()) {
        auto* fresh = new Store;
        fresh->former = found;
        if (current.compare_exchange_strong(found, fresh)) return *fresh;
        delete fresh;
    }
    return *found;
}

/// Runs a call on the store, alone in the process.
template <class Body>
Code guarded(Body&& body) {
    const NotCancelled whole;
    try {
        Store& all = store();
        if (inTransactionOf.is(&all)) return body(all);
        const std::scoped_lock lock(all.mutex);
        return body(all);
    } catch (const std::bad_alloc&) {
        return kNoMemory;
    } catch (const Failure& failure) {
        return failure.code();
    } catch (...) {
        return kBadDatabase;
    }
}

KeyPlace placeOf(const OrvaneStoreKey& key) {
    return {key.id, {reinterpret_cast<const char16_t*>(key.path), key.units}};
}

std::u16string_view view(const OrvaneStoreName& name) {
    return {reinterpret_cast<const char16_t*>(name.folded), name.units};
}

bool isClasses(const OrvaneStoreKey* key) {
    return key->root == ORVANE_STORE_CLASSES;
}

Hive& hiveOf(Store& all, const OrvaneStoreKey* key) {
    return key->root == ORVANE_STORE_USER ? all.user : all.machine;
}

std::uint32_t openKey(const OrvaneStoreKey* base, const OrvaneStoreName* path, int forWriting,
                      std::int64_t* id) {
    *id = 0;
    return guarded([&](Store& all) {
        if (isClasses(base)) {
            return all.classes.open(joined(placeOf(*base).path, view(*path)), forWriting != 0);
        }
        Hive& hive = hiveOf(all, base);
        const Code code = hive.open(placeOf(*base), view(*path), *id);
        return code == kSuccess && forWriting != 0 ? hive.checkWritable() : code;
    });
}

std::uint32_t createKey(const OrvaneStoreKey* base, const OrvaneStoreName* path, int forWriting,
                        std::int64_t* id, int* created) {
    *id = 0;
    *created = 0;
    return guarded([&](Store& all) {
        bool isNew = false;
        Code code = kSuccess;
        const Name name(*path);
        if (isClasses(base)) {
            // Only the folded form of the base is known; it is there already.
            const std::u16string spelled = joined(placeOf(*base).path, name.spelled);
            const std::u16string folded = joined(placeOf(*base).path, name.folded);
            code = all.classes.create(Name(spelled, folded), forWriting != 0, isNew);
        } else {
            Hive& hive = hiveOf(all, base);
            code = hive.create(placeOf(*base), name, *id, isNew);
            if (code == kSuccess && forWriting != 0) code = hive.checkWritable();
        }
        *created = isNew ? 1 : 0;
        return code;
    });
}

std::uint32_t query(const OrvaneStoreKey* key, const OrvaneStoreName* name, OrvaneStoreTake take,
                    void* context) {
    return guarded([&](Store& all) {
        const Take taken{take, context};
        return isClasses(key) ? all.classes.query(placeOf(*key).path, view(*name), taken)
                              : hiveOf(all, key).query(placeOf(*key), view(*name), taken);
    });
}

std::uint32_t setValue(const OrvaneStoreKey* key, const OrvaneStoreName* name, std::uint32_t type,
                       const std::uint8_t* data, std::size_t size) {
    return guarded([&](Store& all) {
        const Bytes bytes(data, size);
        return isClasses(key) ? all.classes.set(placeOf(*key).path, Name(*name), type, bytes)
                              : hiveOf(all, key).set(placeOf(*key), Name(*name), type, bytes);
    });
}

std::uint32_t deleteValue(const OrvaneStoreKey* key, const OrvaneStoreName* name) {
    return guarded([&](Store& all) {
        return isClasses(key) ? all.classes.deleteValue(placeOf(*key).path, view(*name))
                              : hiveOf(all, key).deleteValue(placeOf(*key), view(*name));
    });
}

/// The most units that one of the names has.
std::uint32_t longestIn(const std::vector<KeptName>& names) {
    std::size_t longest = 0;
    for (const KeptName& name : names)
        longest = std::max(longest, name.spelled.size());
    return static_cast<std::uint32_t>(longest);
}

std::uint32_t information(const OrvaneStoreKey* key, OrvaneStoreInformation* found,
                          OrvaneStoreTake takeSubKey, OrvaneStoreTake takeValue, void* context) {
    *found = {};
    return guarded([&](Store& all) {
        KeyContent content;
        const Code code = isClasses(key) ? all.classes.content(placeOf(*key).path, content)
                                         : hiveOf(all, key).content(placeOf(*key), content);
        if (code != kSuccess) return code;
        *found = {static_cast<std::uint32_t>(content.subKeys.size()),
                  longestIn(content.subKeys),
                  static_cast<std::uint32_t>(content.values.size()),
                  longestIn(content.values),
                  content.longestText,
                  content.longestOther};
        for (const auto& [names, take] :
             {std::pair{&content.subKeys, takeSubKey}, std::pair{&content.values, takeValue}}) {
            if (take == nullptr) continue;
            for (const KeptName& name : *names)
                Take{take, context}(bytesOf(name.spelled), 0, {});
        }
        return kSuccess;
    });
}

std::uint32_t subKey(const OrvaneStoreKey* key, std::uint32_t index, OrvaneStoreTake take,
                     void* context) {
    return guarded([&](Store& all) {
        const Take taken{take, context};
        return isClasses(key) ? all.classes.subKey(placeOf(*key).path, index, taken)
                              : hiveOf(all, key).subKey(placeOf(*key), index, taken);
    });
}

std::uint32_t value(const OrvaneStoreKey* key, std::uint32_t index, int withData,
                    OrvaneStoreTake take, void* context) {
    return guarded([&](Store& all) {
        const Take taken{take, context};
        return isClasses(key) ? all.classes.value(placeOf(*key).path, index, withData != 0, taken)
                              : hiveOf(all, key).value(placeOf(*key), index, withData != 0, taken);
    });
}

std::uint32_t deleteEmpty(const OrvaneStoreKey* base, const OrvaneStoreName* path) {
    return guarded([&](Store& all) {
        return isClasses(base) ? all.classes.deleteEmpty(joined(placeOf(*base).path, view(*path)))
                               : hiveOf(all, base).deleteEmpty(placeOf(*base), view(*path));
    });
}

std::uint32_t deleteTree(const OrvaneStoreKey* base, const OrvaneStoreName* path) {
    return guarded([&](Store& all) {
        return isClasses(base) ? all.classes.deleteTree(joined(placeOf(*base).path, view(*path)),
                                                        path->units == 0)
                               : hiveOf(all, base).deleteTree(placeOf(*base), view(*path));
    });
}

std::uint32_t begin() {
    try {
        Store& all = store();
        if (inTransactionOf.is(&all)) return kTransactionExists;
        all.mutex.lock();
        all.user.begin();
        all.machine.begin();
        inTransactionOf.hold(&all);
        return kSuccess;
    } catch (const std::bad_alloc&) {
        return kNoMemory;
    }
}

// Commits unless `committed` is null. The machine's changes first: it is those that the user may
// have no right to.
Code endTransaction(Store* all, std::uint32_t* committed) {
    const NotCancelled whole;
    if (all == nullptr || all != current.load()) return kNoTransaction;
    Code code = kSuccess;
    if (committed != nullptr) {
        *committed = 0;
        code = all->machine.commit();
        if (code == kSuccess) {
            *committed = 1u << ORVANE_STORE_MACHINE;
            code = all->user.commit();
        }
        if (code == kSuccess) *committed |= 1u << ORVANE_STORE_USER;
    }
    all->machine.rollback();
    all->user.rollback();
    all->mutex.unlock();
    return code;
}

std::uint32_t commit(std::uint32_t* committed) {
    *committed = 0;
    return endTransaction(inTransactionOf.letGo(), committed);
}

std::uint32_t rollback() {
    return endTransaction(inTransactionOf.letGo(), nullptr);
}

std::uint32_t claim(std::int32_t root) {
    return guarded([&](Store& all) {
        if (root != ORVANE_STORE_USER && root != ORVANE_STORE_MACHINE) return kSuccess;
        return (root == ORVANE_STORE_USER ? all.user : all.machine).claim();
    });
}

void closeAll() {
    guarded([](Store& all) {
        if (inTransactionOf.is(&all)) return kTransactionExists;
        all.user.close(true);
        all.machine.close(true);
        return kSuccess;
    });
}

constexpr OrvaneStoreTable kTable{ORVANE_STORE_VERSION,
                                  openKey,
                                  createKey,
                                  query,
                                  setValue,
                                  deleteValue,
                                  information,
                                  subKey,
                                  value,
                                  deleteEmpty,
                                  deleteTree,
                                  begin,
                                  commit,
                                  rollback,
                                  claim,
                                  closeAll};

// A forked child shares its parent's idea of the locks on a file, and holds none of them: a
// database that is open then would be damaged sooner or later. So no fork finds one open: both
// sides open theirs again when they need it. A transaction of the forking thread is lost by that.
void beforeFork() {
    Store* all = current.load();
    if (all == nullptr) return;
    if (!inTransactionOf.is(all)) all->mutex.lock();
    all->user.abandon();
    all->machine.abandon();
}

void afterForkInParent() {
    Store* all = current.load();
    if (all != nullptr && !inTransactionOf.is(all)) all->mutex.unlock();
}

void afterForkInChild() {
    Store* all = current.load();
    if (all == nullptr) return;
    all->process = ::getpid();
    if (!inTransactionOf.is(all)) all->mutex.unlock();
}

[[gnu::constructor]] void watchForks() {
    ::pthread_atfork(beforeFork, afterForkInParent, afterForkInChild);
}

// Carries the user's log over into its file, so that an idle database is one file. A call that
// comes after this opens the database again.
[[gnu::destructor]] void closeAtEnd() {
    Store* all = current.load();
    if (all == nullptr || all->process != ::getpid() || !all->mutex.try_lock()) return;
    all->user.close(true);
    all->machine.close(true);
    all->mutex.unlock();
}

}  // namespace

}  // namespace orvane::store

extern "C" __attribute__((visibility("default"))) const OrvaneStoreTable*
orvaneRegistryStore(void) {
    return &orvane::store::kTable;
}

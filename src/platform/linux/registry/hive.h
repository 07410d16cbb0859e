#pragma once

#include "platform/linux/registry/database.h"
#include "platform/linux/registry/places.h"
#include "platform/linux/registry/store.h"

#include <functional>
#include <optional>

namespace orvane::store {

/// A name, spelled and folded, and a path of such names.
struct Name {
    explicit Name(const OrvaneStoreName& name)
        : spelled(reinterpret_cast<const char16_t*>(name.spelled), name.units),
          folded(reinterpret_cast<const char16_t*>(name.folded), name.units) {}
    Name(std::u16string_view spelledName, std::u16string_view foldedName)
        : spelled(spelledName), folded(foldedName) {}

    std::u16string_view spelled;
    std::u16string_view folded;
};

/// A key as its handle knows it: its number, 0 for the root, and its folded path.
struct KeyPlace {
    std::int64_t id;
    std::u16string_view path;
};

/// A name as the database gives it; a sub-key's folded one is its whole path.
struct KeptName {
    std::u16string folded;
    std::u16string spelled;
};

/// What is in a key: its names, and the bytes of its longest values as they are stored.
struct KeyContent {
    std::vector<KeptName> subKeys{};
    std::vector<KeptName> values{};
    std::uint32_t longestText = 0;
    std::uint32_t longestOther = 0;
};

/// What takes a name, a type and data.
struct Take {
    OrvaneStoreTake take;
    void* context;

    void operator()(Bytes name, std::int64_t type, Bytes data) const;
};

/// A moment of a root, as this process sees it: what was found in one holds in the same one still.
struct Moment {
    std::uint64_t epoch = 0;
    std::uint64_t version = 0;

    bool operator==(const Moment&) const = default;
};

/// One root: its database, opened when it is needed and made when something is written to it.
/// Every call is a transaction, or a part of the one that `begin` opened. A database that is not
/// there is an empty root.
class Hive {
public:
    Hive(Place (*place)(), Database::Journal journal) : placeNow_(place), journal_(journal) {}

    /// The number of a key; 2 when there is none, 1018 when the base is gone.
    Code open(const KeyPlace& base, std::u16string_view path, std::int64_t& id);
    /// The same, and makes what is missing.
    Code create(const KeyPlace& base, const Name& path, std::int64_t& id, bool& created);
    /// 5 when this user may not change the root.
    Code checkWritable();

    Code query(const KeyPlace& key, std::u16string_view name, const Take& take);
    Code set(const KeyPlace& key, const Name& name, std::uint32_t type, Bytes data);
    Code deleteValue(const KeyPlace& key, std::u16string_view name);
    /// All of one moment.
    Code content(const KeyPlace& key, KeyContent& content);
    Code subKey(const KeyPlace& key, std::uint32_t index, const Take& take);
    Code value(const KeyPlace& key, std::uint32_t index, bool withData, const Take& take);
    /// All names at once, of the sub-keys or of the values.
    Code names(Sql list, const KeyPlace& key, std::vector<KeptName>& names);
    Code deleteEmpty(const KeyPlace& base, std::u16string_view path);
    Code deleteTree(const KeyPlace& base, std::u16string_view path);

    /// Changes whenever something in the root does, whoever changes it.
    Code moment(Moment& now);

    /// From here on changes are part of one transaction.
    void begin() { inTransaction_ = true; }
    /// Takes the right to write for the rest of a transaction.
    Code claim();
    /// A transaction that failed in the middle is undone: all its further calls and its commit give
    /// 6701.
    Code commit();
    void rollback();

    /// Closes the database. A transaction must not be open.
    void close(bool tidy);
    /// Closes it whatever goes on; a transaction is lost.
    void abandon();

private:
    /// The place in a list that was asked for last: the next one is found from there.
    struct Cursor {
        Sql list = Sql::count_;
        std::int64_t key = 0;
        std::uint32_t index = 0;
        std::int64_t id = 0;
        Moment moment{};
    };

    Code read(const std::function<Code()>& body);
    bool needsCopy(const Failure& failure) const;
    Code readCopy(const std::function<Code()>& body);
    Code write(const std::function<Code()>& body);
    Code attempt(const std::function<Code()>& body);
    Code inOneTransaction(const std::function<Code()>& body);
    bool makeReady(bool forWriting);
    void undo();
    Code atPlace(Sql list, const KeyPlace& key, std::uint32_t index,
                 const std::function<void(Query&)>& take);
    bool isThere(std::int64_t id);
    Code checkThere(const KeyPlace& key);
    std::optional<std::int64_t> find(std::u16string_view path);
    std::vector<KeptName> namesIn(Sql list, const KeyPlace& key);
    void removeBelow(std::u16string_view path);
    std::int64_t makeKeys(std::u16string_view base, std::int64_t baseId, const Name& path);

    Place (*placeNow_)();
    Database::Journal journal_;
    Place place_;
    Database database_;
    Cursor cursor_;
    std::uint64_t epoch_ = 1;  ///< grows with all that the database's own count doesn't tell
    bool inTransaction_ = false;
    bool hasBegun_ = false;  ///< the transaction has changed something
    bool isLost_ = false;
};

/// A path below a base.
std::u16string joined(std::u16string_view base, std::u16string_view path);

}  // namespace orvane::store

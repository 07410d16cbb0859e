#pragma once

#include "platform/linux/registry/hive.h"

namespace orvane::store {

/// The classes root: the user's "Software\Classes" over the machine's. A key is in one or in both;
/// where a value, or a sub-key of one name, is in both, the user's is the one that is seen.
///
/// Changes go to the user's where the key is there, and to the machine's otherwise. Keys are known
/// by their paths here, not by numbers.
class Classes {
public:
    Classes(Hive& user, Hive& machine) : user_(user), machine_(machine) {}

    Code open(std::u16string_view path, bool forWriting);
    Code create(const Name& path, bool forWriting, bool& created);
    Code query(std::u16string_view path, std::u16string_view name, const Take& take);
    Code set(std::u16string_view path, const Name& name, std::uint32_t type, Bytes data);
    Code deleteValue(std::u16string_view path, std::u16string_view name);
    Code content(std::u16string_view path, KeyContent& content);
    Code subKey(std::u16string_view path, std::uint32_t index, const Take& take);
    Code value(std::u16string_view path, std::uint32_t index, bool withData, const Take& take);
    Code deleteEmpty(std::u16string_view path);
    /// `keepsKey`: what is in the key, but not the key.
    Code deleteTree(std::u16string_view path, bool keepsKey);

private:
    /// The key in one of the two roots, with its path there.
    struct Found {
        Code code;
        std::u16string path;
        std::int64_t id = 0;
        bool isThere() const { return code == kSuccess; }
        /// Its root can't tell whether it is there.
        bool failed() const { return code != kSuccess && code != kNotFound; }
        KeyPlace place() const { return {id, path}; }
    };
    static Found find(Hive& hive, std::u16string_view path);

    /// A name of a merged list, and whose it is.
    struct Item {
        KeptName name;
        Hive* hive;
        std::int64_t key;
    };
    /// The merged list of a key's sub-keys or values, as it was at a moment of both roots.
    struct Listing {
        Sql list;
        bool isRead = false;
        std::u16string path{};
        Moment user{};
        Moment machine{};
        std::vector<Item> items{};
    };
    Code read(Listing& listing, std::u16string_view path);
    static Code addNames(Sql list, Hive& hive, const Found& found, std::vector<Item>& items);

    /// Where a key that is there gets its changes; 2 when it isn't.
    Code owner(std::u16string_view path, Hive*& hive, Found& found);

    Hive& user_;
    Hive& machine_;
    Listing subKeys_{Sql::subKeys};
    Listing values_{Sql::valueNames};
};

}  // namespace orvane::store

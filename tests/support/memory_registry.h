#pragma once

#include "platform/advapi32.h"
#include "platform/shlwapi.h"
#include "support/recorder.h"

#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace orvane::test {

/// Stands in for the registry while it lives: the wide operations and the deletions, over keys in
/// memory. Names compare without regard to the case of Latin letters; HKEY_CLASSES_ROOT shows the
/// classes of the user over those of the machine.
class MemoryRegistry {
public:
    MemoryRegistry();
    MemoryRegistry(const MemoryRegistry&) = delete;
    MemoryRegistry& operator=(const MemoryRegistry&) = delete;

    /// The texts of all values under a predefined key, by "path\name"; a key without values counts
    /// with an empty name.
    std::map<std::u16string, std::u16string> texts(platform::RegistryKey root) const;
    /// Writes a text value.
    void set(platform::RegistryKey root, const std::u16string& path, const std::u16string& name,
             const std::u16string& text);
    /// Makes every change under a predefined key fail with 5.
    void deny(platform::RegistryKey root) { denied_.insert(root); }
    /// Takes everything away.
    void clear() { keys_.clear(); }
    /// True until a transaction that was begun is committed or undone.
    bool isInTransaction() const { return before_.has_value(); }

private:
    using Code = platform::ResultCode;
    using Place = std::pair<platform::RegistryKey, std::u16string>;
    struct Value {
        std::u16string name;
        std::uint32_t type;
        std::vector<std::uint8_t> data;
    };
    struct Key {
        std::u16string path;
        std::map<std::u16string, Value> values;
    };

    Place placeOf(platform::RegistryKey root, const std::u16string& path) const;
    platform::RegistryKey handleOf(const Place& place);
    Code open(platform::RegistryKey root, const std::u16string& path, platform::RegistryKey& key);
    Code create(platform::RegistryKey root, const std::u16string& path, platform::RegistryKey& key);
    Code query(platform::RegistryKey key, const std::u16string& name, std::uint32_t& type,
               std::vector<std::uint8_t>& data) const;
    Code write(platform::RegistryKey key, const std::u16string& name, std::uint32_t type,
               std::span<const std::uint8_t> data);
    Code close(platform::RegistryKey key);
    Code remove(platform::RegistryKey root, const std::u16string& path, bool onlyEmpty);

    std::map<Place, Key> keys_;
    std::optional<std::map<Place, Key>> before_;  ///< in a transaction
    std::map<platform::RegistryKey, Place> handles_;
    std::set<platform::RegistryKey> denied_;
    std::uint32_t next_ = 1;

    ScopedTarget<Code(platform::RegistryKey, const std::u16string&, std::uint32_t, std::uint32_t,
                      platform::RegistryKey&)>
        open_;
    ScopedTarget<Code(platform::RegistryKey, const std::u16string&, std::uint32_t, std::uint32_t,
                      platform::RegistryKey&, platform::KeyDisposition&)>
        create_;
    ScopedTarget<Code(platform::RegistryKey, const std::u16string&, std::uint32_t&,
                      std::vector<std::uint8_t>&)>
        query_;
    ScopedTarget<Code(platform::RegistryKey, const std::u16string&, std::uint32_t,
                      std::span<const std::uint8_t>)>
        write_;
    ScopedTarget<Code(platform::RegistryKey)> close_;
    ScopedTarget<Code(platform::RegistryKey, const std::u16string&)> removeTree_;
    ScopedTarget<Code(platform::RegistryKey, const std::string&)> removeEmpty_;
    ScopedTarget<Code()> begin_;
    ScopedTarget<Code()> commit_;
    ScopedTarget<Code()> rollback_;
};

}  // namespace orvane::test

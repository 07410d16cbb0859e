#pragma once

#include "platform/registry.h"

namespace orvane::platform {

struct Shlwapi {
    /// Deletes a key that has no sub-keys, with its values. 2 when there is no such key; a key with
    /// sub-keys is refused.
    Operation<ResultCode(RegistryKey root, const std::string& subKey)> SHDeleteEmptyKeyA{
        "shlwapi", "SHDeleteEmptyKeyA", ResultCode{kErrorAccessDenied}};
    /// Deletes a key with all below it. 2 when there is no such key.
    Operation<ResultCode(RegistryKey root, const std::string& subKey)> SHDeleteKeyA{
        "shlwapi", "SHDeleteKeyA", ResultCode{kErrorAccessDenied}};
    /// The same for a name of UTF-16 units.
    Operation<ResultCode(RegistryKey root, const std::u16string& subKey)> SHDeleteKeyW{
        "shlwapi", "SHDeleteKeyW", ResultCode{kErrorAccessDenied}};

    template <class Visitor>
    constexpr void visit(Visitor&& visitor) {
        visitor(SHDeleteEmptyKeyA, SHDeleteKeyA, SHDeleteKeyW);
    }
};
extern Shlwapi shlwapi;

/// Many changes as one. What the calling thread does to the registry between a begin and its end is
/// seen by nobody else until the commit, and a failed commit, a rollback or the end of the process
/// leaves nothing of it. Changes under more than one predefined key are one transaction each.
/// Windows' registry has none that every system knows: there a begin gives 50
/// (`kErrorNotSupported`), and the caller goes without.
struct RegistryTransactions {
    /// Begins a transaction of the calling thread; other threads' calls wait until it ends. 6717
    /// when the thread has one already.
    Operation<ResultCode()> Begin{"registry", "BeginTransaction", ResultCode{kErrorNotSupported}};
    /// Makes the changes last. On a failure they are undone, and the transaction is over as well.
    Operation<ResultCode()> Commit{"registry", "CommitTransaction", ResultCode{kErrorDiskFull}};
    /// Undoes the changes.
    Operation<ResultCode()> Rollback{"registry", "RollbackTransaction",
                                     ResultCode{kErrorNotSupported}};

    template <class Visitor>
    constexpr void visit(Visitor&& visitor) {
        visitor(Begin, Commit, Rollback);
    }
};
extern RegistryTransactions registryTransactions;

}  // namespace orvane::platform

#pragma once

#include "platform/linux/registry/database.h"
#include "platform/linux/registry/places.h"

namespace orvane::store {

/// Holds a root's folder for its life against all others who make a database there or set one
/// aside. Whoever may look into the folder can hold it, so nobody waits for it for ever.
class FolderLock {
public:
    explicit FolderLock(const std::string& folder,
                        std::chrono::milliseconds longest = kLongestWait);
    ~FolderLock();
    FolderLock(const FolderLock&) = delete;
    FolderLock& operator=(const FolderLock&) = delete;

    /// 0 when it is held, or the number of the error: `EWOULDBLOCK` when somebody else had it for
    /// all that time.
    int failure() const { return failure_; }

private:
    int folder_;
    int failure_ = 0;
};

/// Gives a damaged database with its log another name beside its own,
/// "registry.db.damaged-20260131-235959", says so on the error output and lets a new one be begun.
/// A database of ours that lacks a table is damaged, too.
/// Does nothing when the file turns out to be whole, or not ours: somebody else was here before.
/// False when the file may not be moved. The database must be closed in this process.
bool setAsideIfDamaged(const Place& place);

/// True when a log lies beside a database that isn't there or has no bytes: what was written to the
/// log is lost without the database, but it is somebody's only copy.
bool hasOrphanedLog(const Place& place);
/// Gives such a log a name like that of a damaged database, and says so: a new database must not
/// take it for its own, or take it away. False when it may not be moved. The folder must be locked.
bool setOrphanedLogAside(const Place& place);

}  // namespace orvane::store

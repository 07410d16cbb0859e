#pragma once

#include "platform/linux/registry/database.h"
#include "platform/linux/registry/places.h"

namespace orvane::store {

/// Holds a root's folder for its life against all others who make a database there or set one
/// aside.
class FolderLock {
public:
    explicit FolderLock(const std::string& folder);
    ~FolderLock();
    FolderLock(const FolderLock&) = delete;
    FolderLock& operator=(const FolderLock&) = delete;

private:
    int folder_;
};

/// Gives a damaged database with its log another name beside its own,
/// "registry.db.damaged-20260131-235959", says so on the error output and lets a new one be begun.
/// Does nothing when the file turns out to be whole: somebody else was here before. False when the
/// file may not be moved. The database must be closed in this process.
bool setAsideIfDamaged(const Place& place);

/// A log without its database is kept like a damaged one: a new database must not take it for its
/// own. The folder must be locked.
void setOrphanedLogAside(const Place& place);

}  // namespace orvane::store

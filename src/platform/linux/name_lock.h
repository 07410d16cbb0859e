#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <sys/types.h>

namespace orvane::platform {

/// A holder of a name that all processes of the system share.
///
/// A name is a file in the system's folder for locks; it means nothing by being there. Holders keep
/// locks of their open file on it, which end with the process however it ends: a read lock on the
/// byte `kFirstHolder` plus the number of the holder's user. Byte 0 is locked while somebody takes
/// the name or lets go of it. Nobody waits for a holder; for byte 0 a short while at most.
///
/// In a child made by `fork` a holder holds nothing: its parent's name ends with the parent.
class NameLock {
public:
    static constexpr off_t kFirstHolder = 16;

    NameLock() = default;
    NameLock(const NameLock&) = delete;
    NameLock& operator=(const NameLock&) = delete;
    /// Lets go of the name; the last holder removes the file where the folder lets it.
    ~NameLock();

    /// Takes the name whose file is `path`, once for an object. 0: nobody held it;
    /// `kErrorAlreadyExists`: this user did, and it is held here too. Anything else is a failure:
    /// `kErrorAccessDenied` when another user holds the name or something that is no file of ours
    /// (a link, a pipe, a folder) is in its place.
    std::uint32_t take(const std::string& path);

private:
    int attach(const std::string& path);
    int lockName();
    int withdraw();
    void release(int descriptor) const;
    static void beforeFork();
    static void afterForkInParent();
    static void afterForkInChild();
    friend struct NameLockList;

    std::string path_;
    pid_t owner_ = 0;
    int descriptor_ = -1;
    NameLock* previous_ = nullptr;
    NameLock* next_ = nullptr;
};

/// The hash (FNV-1a of 128 bits) of a name in hexadecimal digits: a stand-in where not every text
/// can be a name.
std::string nameHash(std::string_view name);

/// The file of a name. It is hashed, so that any text is a name. Empty when the system has no
/// folder in which everybody may make files and nobody remove another's.
std::string nameLockPath(std::string_view name);

}  // namespace orvane::platform

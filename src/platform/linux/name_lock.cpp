#include "platform/linux/name_lock.h"

#include "platform/linux/errors.h"

#include <cerrno>
#include <ctime>
#include <fcntl.h>
#include <mutex>
#include <pthread.h>
#include <sched.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace orvane::platform {

/// All holders that have a file open, for the child of a `fork` to close them.
struct NameLockList {
    std::mutex mutex;
    NameLock* first = nullptr;

    void add(NameLock& lock) {
        lock.next_ = first;
        if (first != nullptr) {
            first->previous_ = &lock;
        }
        first = &lock;
    }

    void remove(NameLock& lock) {
        (lock.previous_ != nullptr ? lock.previous_->next_ : first) = lock.next_;
        if (lock.next_ != nullptr) {
            lock.next_->previous_ = lock.previous_;
        }
        lock.previous_ = lock.next_ = nullptr;
    }
};

namespace {

constinit NameLockList openLocks;

constexpr off_t kGuard = 0;
constexpr off_t kToTheEnd = 0;
constexpr mode_t kForEverybody = 0666;

// Tries at a name that somebody is busy with: at once at first, then with naps, two seconds in all.
// Who holds byte 0 longer than that sits on the name.
constexpr int kTriesAtOnce = 100;
constexpr int kMostTries = 20000;
// A file of another user that can't be opened may be about to get its mode.
constexpr int kTriesAtClosedFile = 200;

struct flock range(short type, off_t start, off_t length) {
    struct flock lock {};
    lock.l_type = type;
    lock.l_whence = SEEK_SET;
    lock.l_start = start;
    lock.l_len = length;
    return lock;
}

/// Sets or lifts a lock of the open file without waiting.
bool setLock(int descriptor, short type, off_t start, off_t length) {
    struct flock lock = range(type, start, length);
    return ::fcntl(descriptor, F_OFD_SETLK, &lock) == 0;
}

/// The first lock that somebody else has among the holders' bytes; its type is F_UNLCK when there
/// is none.
struct flock otherHolder(int descriptor) {
    struct flock lock = range(F_WRLCK, NameLock::kFirstHolder, kToTheEnd);
    if (::fcntl(descriptor, F_OFD_GETLK, &lock) != 0) {
        lock.l_type = F_WRLCK;
    }
    return lock;
}

off_t byteOfUser() {
    return NameLock::kFirstHolder + static_cast<off_t>(::geteuid());
}

/// 0 when an open file is the one of its name, EAGAIN when it was removed, EPERM when it is none of
/// ours.
int examine(int descriptor, const std::string& path) {
    struct stat open {};
    struct stat named {};
    if (::fstat(descriptor, &open) != 0) {
        return errno;
    }
    if (!S_ISREG(open.st_mode) || open.st_nlink > 1) {
        return EPERM;
    }
    if (::lstat(path.c_str(), &named) != 0) {
        return errno == ENOENT ? EAGAIN : errno;
    }
    return open.st_dev == named.st_dev && open.st_ino == named.st_ino ? 0 : EAGAIN;
}

/// Opens the file of a name and makes it when there is none; `errno`, EAGAIN when another process
/// was faster.
int openFile(const std::string& path, int& descriptor) {
    constexpr int kFlags = O_RDWR | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY;
    // In shared folders the system may refuse a file that is another user's to an opening that
    // would create it.
    descriptor = ::open(path.c_str(), kFlags);
    if (descriptor >= 0 || errno != ENOENT) {
        return descriptor >= 0 ? 0 : errno;
    }
    descriptor = ::open(path.c_str(), kFlags | O_CREAT | O_EXCL, kForEverybody);
    if (descriptor < 0) {
        return errno == EEXIST ? EAGAIN : errno;
    }
    // Every user is to open it, whatever this process takes from the files that it makes.
    return ::fchmod(descriptor, kForEverybody) == 0 ? 0 : errno;
}

bool worthAnotherTry(int failure, int tries) {
    return failure == EAGAIN || (failure == EACCES && tries < kTriesAtClosedFile);
}

void pause(int tries) {
    if (tries < kTriesAtOnce) {
        ::sched_yield();
        return;
    }
    const timespec nap{0, 100'000};
    ::nanosleep(&nap, nullptr);
}

std::uint32_t takeError(int failure) {
    switch (failure) {
    case EEXIST:
        return kErrorAlreadyExists;
    case EAGAIN:
    case EACCES:
    case EPERM:
    case ELOOP:
    case EISDIR:
    case ENXIO:
        return kErrorAccessDenied;
    default:
        return errorFromErrno(failure);
    }
}

bool isLockFolder(const char* name) {
    constexpr mode_t kShared = S_ISVTX | S_IWOTH;
    struct stat facts {};
    return ::stat(name, &facts) == 0 && S_ISDIR(facts.st_mode) &&
           (facts.st_mode & kShared) == kShared;
}

}  // namespace

void NameLock::beforeFork() {
    openLocks.mutex.lock();
}

void NameLock::afterForkInParent() {
    openLocks.mutex.unlock();
}

// Closing takes nothing from the parent: its locks belong to the open file, which it still has.
void NameLock::afterForkInChild() {
    while (openLocks.first != nullptr) {
        NameLock& lock = *openLocks.first;
        openLocks.remove(lock);
        ::close(std::exchange(lock.descriptor_, -1));
    }
    openLocks.mutex.unlock();
}

NameLock::~NameLock() {
    if (const int descriptor = withdraw(); descriptor >= 0) {
        release(descriptor);
    }
}

std::uint32_t NameLock::take(const std::string& path) {
    path_ = path;
    owner_ = ::getpid();
    for (int tries = 0;; ++tries) {
        int failure = attach(path);
        if (failure == 0) {
            failure = lockName();
        }
        if (failure == 0 || failure == EEXIST) {
            return takeError(failure);
        }
        if (const int descriptor = withdraw(); descriptor >= 0) {
            ::close(descriptor);
        }
        if (!worthAnotherTry(failure, tries) || tries == kMostTries) {
            return takeError(failure);
        }
        pause(tries);
    }
}

/// Opens the file where a `fork` finds it; `errno`.
int NameLock::attach(const std::string& path) {
    static const int hooked = ::pthread_atfork(&beforeFork, &afterForkInParent, &afterForkInChild);
    if (hooked != 0) {
        return hooked;
    }
    const std::scoped_lock lock(openLocks.mutex);
    const int failure = openFile(path, descriptor_);
    if (descriptor_ >= 0) {
        openLocks.add(*this);
    }
    return failure;
}

/// Becomes a holder of the open file: 0 as the first, EEXIST beside others, EPERM when another user
/// has it, EAGAIN when somebody is busy with it.
int NameLock::lockName() {
    // Before the first lock too: another program's file is not ours to lock.
    if (const int failure = examine(descriptor_, path_); failure != 0) {
        return failure;
    }
    if (!setLock(descriptor_, F_WRLCK, kGuard, 1)) {
        return errno == EACCES ? EAGAIN : errno;
    }
    int outcome = examine(descriptor_, path_);
    if (outcome == 0) {
        const struct flock other = otherHolder(descriptor_);
        const bool sameUser = other.l_start == byteOfUser() && other.l_len == 1;
        if (other.l_type != F_UNLCK) {
            outcome = sameUser ? EEXIST : EPERM;
        }
    }
    if (outcome == 0 || outcome == EEXIST) {
        if (!setLock(descriptor_, F_RDLCK, byteOfUser(), 1)) {
            outcome = EPERM;
        }
    }
    setLock(descriptor_, F_UNLCK, kGuard, 1);
    return outcome;
}

/// Takes the descriptor away from the object; -1 when it has none.
int NameLock::withdraw() {
    const std::scoped_lock lock(openLocks.mutex);
    if (descriptor_ >= 0) {
        openLocks.remove(*this);
    }
    return std::exchange(descriptor_, -1);
}

/// Lifts the locks themselves: a process that was made behind the back of the hooks may have the
/// same open file.
void NameLock::release(int descriptor) const {
    if (owner_ == ::getpid()) {
        if (setLock(descriptor, F_WRLCK, kGuard, 1)) {
            if (otherHolder(descriptor).l_type == F_UNLCK && examine(descriptor, path_) == 0) {
                ::unlink(path_.c_str());
            }
        }
        setLock(descriptor, F_UNLCK, 0, kToTheEnd);
    }
    ::close(descriptor);
}

std::string nameHash(std::string_view name) {
    __extension__ using Hash = unsigned __int128;
    constexpr Hash kBasis = (Hash{0x6c62272e07bb0142} << 64) | 0x62b821756295c58d;
    constexpr Hash kPrime = (Hash{1} << 88) | 0x13b;
    constexpr char kDigits[] = "0123456789abcdef";
    Hash hash = kBasis;
    for (const char each : name) {
        hash = (hash ^ static_cast<unsigned char>(each)) * kPrime;
    }
    std::string text;
    for (int shift = 124; shift >= 0; shift -= 4) {
        text += kDigits[static_cast<unsigned>(hash >> shift) & 0xF];
    }
    return text;
}

std::string nameLockPath(std::string_view name) {
    const std::string file = "/orvane-" + nameHash(name);
    for (const char* folder : {"/run/lock", "/tmp"}) {
        if (isLockFolder(folder)) {
            return folder + file;
        }
    }
    return {};
}

}  // namespace orvane::platform

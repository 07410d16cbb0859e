#include "platform/linux/registry/copy.h"

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <fcntl.h>
#include <span>
#include <sqlite3.h>
#include <string>
#include <sys/stat.h>
#include <tuple>
#include <unistd.h>
#include <vector>

namespace orvane::store {

namespace {

[[noreturn]] void fail(int result) {
    throw Failure{result, result == SQLITE_BUSY ? 0 : errno};
}

/// The folder for temporary files. A process with more rights than its user doesn't let that user
/// name it.
std::string temporaryFolder() {
    const char* named = ::secure_getenv("TMPDIR");
    return named == nullptr || named[0] != '/' ? "/tmp" : named;
}

/// A new folder for this process alone, gone with all it holds at its end.
class PrivateFolder {
public:
    explicit PrivateFolder(const std::string& above) : path_(above + "/orvane-registry-XXXXXX") {
        if (::mkdtemp(path_.data()) == nullptr) fail(SQLITE_CANTOPEN);
    }
    ~PrivateFolder() {
        for (const char* part : {"", "-journal", "-wal", "-shm"})
            ::unlink((place().file() + part).c_str());
        ::rmdir(path_.c_str());
    }
    PrivateFolder(const PrivateFolder&) = delete;
    PrivateFolder& operator=(const PrivateFolder&) = delete;

    Place place() const { return {path_, true}; }

private:
    std::string path_;
};

/// A file that is open, closed at its end.
class File {
public:
    File(const std::string& path, int flags) : descriptor_(::open(path.c_str(), flags, 0600)) {}
    ~File() {
        if (descriptor_ >= 0) ::close(descriptor_);
    }
    File(const File&) = delete;
    File& operator=(const File&) = delete;

    bool isOpen() const { return descriptor_ >= 0; }

    /// Reads the next bytes, fewer at the end only.
    std::size_t read(std::span<char> bytes) const {
        std::size_t done = 0;
        ssize_t count = 0;
        while (done < bytes.size() &&
               (count = ::read(descriptor_, bytes.data() + done, bytes.size() - done)) > 0) {
            done += static_cast<std::size_t>(count);
        }
        if (count < 0) fail(SQLITE_IOERR_READ);
        return done;
    }

    void write(std::span<const char> bytes) const {
        while (!bytes.empty()) {
            const ssize_t count = ::write(descriptor_, bytes.data(), bytes.size());
            if (count < 0) fail(SQLITE_IOERR_WRITE);
            bytes = bytes.subspan(static_cast<std::size_t>(count));
        }
    }

private:
    int descriptor_;
};

File newFile(const std::string& path) {
    return {path, O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC};
}

/// A database under the lock that readers have: nobody changes it while this lives, and nobody
/// undoes what is unfinished in it. The lock is SQLite's own, through SQLite's own file: to close
/// another descriptor of that file would end all locks that this process has on it.
class LockedDatabase {
public:
    explicit LockedDatabase(const std::string& path) {
        const int result =
            sqlite3_open_v2(path.c_str(), &connection_, SQLITE_OPEN_READONLY, nullptr);
        if (result == SQLITE_OK) {
            sqlite3_file_control(connection_, "main", SQLITE_FCNTL_FILE_POINTER, &file_);
        }
        if (file_ == nullptr || file_->pMethods == nullptr) failClosed(SQLITE_CANTOPEN);
        if (file_->pMethods->xLock(file_, SQLITE_LOCK_SHARED) != SQLITE_OK) failClosed(SQLITE_BUSY);
        // Somebody is writing: what was unfinished is undone, and there is something new.
        int isReserved = 0;
        if (file_->pMethods->xCheckReservedLock(file_, &isReserved) != SQLITE_OK ||
            isReserved != 0) {
            failClosed(SQLITE_BUSY);
        }
    }
    ~LockedDatabase() { close(); }
    LockedDatabase(const LockedDatabase&) = delete;
    LockedDatabase& operator=(const LockedDatabase&) = delete;

    void copyTo(const File& copy) const {
        sqlite3_int64 size = 0;
        if (file_->pMethods->xFileSize(file_, &size) != SQLITE_OK) fail(SQLITE_IOERR_READ);
        std::vector<char> block(std::size_t{1} << 18);
        for (sqlite3_int64 at = 0; at < size; at += static_cast<sqlite3_int64>(block.size())) {
            const auto count = static_cast<std::size_t>(
                std::min(size - at, static_cast<sqlite3_int64>(block.size())));
            const int result =
                file_->pMethods->xRead(file_, block.data(), static_cast<int>(count), at);
            if (result != SQLITE_OK) fail(result);
            copy.write({block.data(), count});
        }
    }

private:
    [[noreturn]] void failClosed(int result) {
        close();
        fail(result);
    }

    void close() {
        if (file_ != nullptr && file_->pMethods != nullptr) {
            file_->pMethods->xUnlock(file_, SQLITE_LOCK_NONE);
        }
        sqlite3_close(connection_);
    }

    sqlite3* connection_ = nullptr;
    sqlite3_file* file_ = nullptr;
};

/// What tells one content of a file from another; all 0 when there is no file.
using FileFacts = std::tuple<ino_t, off_t, time_t, long>;

FileFacts factsOf(const std::string& path) {
    struct stat facts {};
    if (::stat(path.c_str(), &facts) != 0) return {};
    return {facts.st_ino, facts.st_size, facts.st_mtim.tv_sec, facts.st_mtim.tv_nsec};
}

/// Copies a journal or log; false when there is none.
bool copyFile(const std::string& path, const std::string& copy) {
    const File from(path, O_RDONLY | O_CLOEXEC);
    if (!from.isOpen()) {
        if (errno == ENOENT) return false;
        fail(SQLITE_CANTOPEN);
    }
    const File to = newFile(copy);
    if (!to.isOpen()) fail(SQLITE_CANTOPEN);
    std::vector<char> block(std::size_t{1} << 18);
    std::size_t count = 0;
    while ((count = from.read(block)) > 0)
        to.write({block.data(), count});
    return true;
}

void copyDatabase(const std::string& path, const std::string& copy, Database::Journal journal) {
    const LockedDatabase original(path);
    const File copied = newFile(copy);
    if (!copied.isOpen()) fail(SQLITE_CANTOPEN);
    if (journal == Database::Journal::rollback) {
        original.copyTo(copied);
        // Undone in the meantime: the database itself can be read.
        if (!copyFile(path + "-journal", copy + "-journal")) fail(SQLITE_BUSY);
        return;
    }
    // A log is written to, and carried over, under other locks than the one held here.
    const auto now = [&] { return std::pair(factsOf(path), factsOf(path + "-wal")); };
    const auto before = now();
    original.copyTo(copied);
    copyFile(path + "-wal", copy + "-wal");
    if (now() != before) fail(SQLITE_BUSY);
}

void openCopyIn(const std::string& folder, Database& database, const Place& place,
                Database::Journal journal) {
    const PrivateFolder own(folder);
    copyDatabase(place.file(), own.place().file(), journal);
    // The first look into the copy undoes what is unfinished and opens the log; from then on nobody
    // asks for its name.
    database.open(own.place().file(), journal);
}

}  // namespace

void openCopy(Database& database, const Place& place, Database::Journal journal) {
    try {
        openCopyIn(temporaryFolder(), database, place, journal);
        return;
    } catch (const Failure& failure) {
        if (failure.isContention() || failure.isDamage()) throw;
        try {
            openCopyIn("/dev/shm", database, place, journal);
            return;
        } catch (const Failure& again) {
            if (again.isContention() || again.isDamage()) throw;
        }
        throw;
    }
}

}  // namespace orvane::store

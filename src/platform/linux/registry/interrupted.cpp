#include "platform/linux/registry/interrupted.h"

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <fcntl.h>
#include <span>
#include <sqlite3.h>
#include <string>
#include <unistd.h>
#include <vector>

namespace orvane::store {

namespace {

[[noreturn]] void fail(int result) {
    throw Failure{result, result == SQLITE_BUSY ? 0 : errno};
}

/// A new folder for this process alone, gone with all it holds at its end.
class PrivateFolder {
public:
    PrivateFolder() {
        // A process with more rights than its user doesn't let that user name the folder.
        const char* temporary = ::secure_getenv("TMPDIR");
        path_ = temporary == nullptr || temporary[0] != '/' ? "/tmp" : temporary;
        path_ += "/orvane-registry-XXXXXX";
        if (::mkdtemp(path_.data()) == nullptr) fail(SQLITE_CANTOPEN);
    }
    ~PrivateFolder() {
        for (const char* part : {"", "-journal"})
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

void copyJournal(const std::string& path, const File& copy) {
    const File journal(path, O_RDONLY | O_CLOEXEC);
    // Undone in the meantime: the database itself can be read.
    if (!journal.isOpen()) fail(errno == ENOENT ? SQLITE_BUSY : SQLITE_CANTOPEN);
    std::vector<char> block(std::size_t{1} << 18);
    std::size_t count = 0;
    while ((count = journal.read(block)) > 0)
        copy.write({block.data(), count});
}

}  // namespace

void openWithoutUnfinished(Database& database, const Place& place) {
    const PrivateFolder folder;
    const std::string copy = folder.place().file();
    {
        const LockedDatabase original(place.file());
        const File copied = newFile(copy);
        const File journal = newFile(copy + "-journal");
        if (!copied.isOpen() || !journal.isOpen()) fail(SQLITE_CANTOPEN);
        original.copyTo(copied);
        copyJournal(place.file() + "-journal", journal);
    }
    // The first look into the copy undoes; from then on nobody asks for its name.
    database.open(copy, Database::Journal::rollback);
}

}  // namespace orvane::store

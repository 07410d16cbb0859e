#include "platform/linux/registry/damage.h"

#include <array>
#include <cerrno>
#include <cstdio>
#include <ctime>
#include <fcntl.h>
#include <sqlite3.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>

namespace orvane::store {

namespace {

bool exists(const std::string& path) {
    return ::access(path.c_str(), F_OK) == 0;
}

/// The bytes of a file; 0 when there is none.
off_t sizeOf(const std::string& path) {
    struct stat facts {};
    return ::stat(path.c_str(), &facts) == 0 ? facts.st_size : 0;
}

/// A name that nothing has yet, nor its log.
std::string freeName(const std::string& path) {
    std::array<char, 32> stamp{};
    const std::time_t now = std::time(nullptr);
    std::tm local{};
    ::localtime_r(&now, &local);
    std::strftime(stamp.data(), stamp.size(), "%Y%m%d-%H%M%S", &local);
    const std::string name = path + ".damaged-" + stamp.data();
    std::string free = name;
    for (int number = 2; exists(free) || exists(free + "-wal") || exists(free + "-journal");
         ++number)
        free = name + "-" + std::to_string(number);
    return free;
}

bool moveAside(const std::string& path, const std::string& aside) {
    if (exists(path) && ::rename(path.c_str(), aside.c_str()) != 0) return false;
    for (const char* part : {"-wal", "-shm", "-journal"})
        ::rename((path + part).c_str(), (aside + part).c_str());
    return true;
}

class Connection {
public:
    explicit Connection(const std::string& path) {
        sqlite3_open_v2(path.c_str(), &connection_, SQLITE_OPEN_READWRITE | SQLITE_OPEN_EXRESCODE,
                        nullptr);
        sqlite3_busy_timeout(connection_, 10000);
        // The log belongs to the damage.
        sqlite3_db_config(connection_, SQLITE_DBCONFIG_NO_CKPT_ON_CLOSE, 1, nullptr);
    }
    ~Connection() { sqlite3_close(connection_); }
    Connection(const Connection&) = delete;
    Connection& operator=(const Connection&) = delete;

    int run(const char* sql) {
        return sqlite3_exec(connection_, sql, nullptr, nullptr, nullptr) & 0xFF;
    }

    /// "ok" is the one line that the check of a whole database gives. A database of ours has our
    /// tables, too.
    bool isWhole() {
        if (firstText("PRAGMA integrity_check(1)") != "ok") return false;
        const bool isOurs = firstText("PRAGMA application_id") == std::to_string(kApplicationId) &&
                            firstText("PRAGMA user_version") == std::to_string(kSchemaVersion);
        return !isOurs || (isValid("SELECT id,parent,path,name FROM keys") &&
                           isValid("SELECT id,key,folded,name,type,data FROM entries"));
    }

private:
    /// The first column of the first row, "" when there is none.
    std::string firstText(const char* sql) {
        sqlite3_stmt* statement = nullptr;
        std::string found;
        if (sqlite3_prepare_v2(connection_, sql, -1, &statement, nullptr) == SQLITE_OK &&
            sqlite3_step(statement) == SQLITE_ROW) {
            const auto* text = sqlite3_column_text(statement, 0);
            if (text != nullptr) found = reinterpret_cast<const char*>(text);
        }
        sqlite3_finalize(statement);
        return found;
    }
    bool isValid(const char* sql) {
        sqlite3_stmt* statement = nullptr;
        const int result = sqlite3_prepare_v2(connection_, sql, -1, &statement, nullptr);
        sqlite3_finalize(statement);
        return result != SQLITE_ERROR;
    }

    sqlite3* connection_ = nullptr;
};

}  // namespace

FolderLock::FolderLock(const std::string& folder, std::chrono::milliseconds longest)
    : folder_(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC)) {
    const auto end = std::chrono::steady_clock::now() + longest;
    if (folder_ < 0) failure_ = errno;
    while (folder_ >= 0) {
        failure_ = ::flock(folder_, LOCK_EX | LOCK_NB) == 0 ? 0 : errno;
        const bool mayWait = failure_ == EWOULDBLOCK || failure_ == EINTR;
        if (!mayWait || std::chrono::steady_clock::now() > end) break;
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
}

FolderLock::~FolderLock() {
    if (folder_ >= 0) ::close(folder_);
}

bool setAsideIfDamaged(const Place& place) {
    const FolderLock lock(place.folder);
    if (lock.failure() != 0) return false;
    const std::string path = place.file();
    if (!exists(path)) return true;
    // Whoever has it open finds out, once the write lock is free again, that the file has moved.
    Connection connection(path);
    const int begun = connection.run("BEGIN EXCLUSIVE");
    if (begun != SQLITE_OK && begun != SQLITE_CORRUPT && begun != SQLITE_NOTADB) return false;
    if (begun == SQLITE_OK && connection.isWhole()) return true;
    const std::string aside = freeName(path);
    if (!moveAside(path, aside)) return false;
    std::fprintf(stderr,
                 "orvane: the registry database %s is damaged. It is kept as %s, and a new one is "
                 "begun.\n",
                 path.c_str(), aside.c_str());
    return true;
}

bool hasOrphanedLog(const Place& place) {
    const std::string path = place.file();
    return sizeOf(path) == 0 && sizeOf(path + "-wal") != 0;
}

bool setOrphanedLogAside(const Place& place) {
    const std::string path = place.file();
    const std::string aside = freeName(path);
    if (!moveAside(path, aside) || exists(path + "-wal")) return false;
    std::fprintf(stderr,
                 "orvane: of the registry database %s only the log was left. It is kept as %s-wal, "
                 "and a new database is begun.\n",
                 path.c_str(), aside.c_str());
    return true;
}

}  // namespace orvane::store

#include "platform/linux/registry/damage.h"

#include <array>
#include <cstdio>
#include <ctime>
#include <fcntl.h>
#include <sqlite3.h>
#include <sys/file.h>
#include <unistd.h>

namespace orvane::store {

namespace {

bool exists(const std::string& path) {
    return ::access(path.c_str(), F_OK) == 0;
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
    for (int number = 2; exists(free) || exists(free + "-wal"); ++number)
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

    /// "ok" is the one line that the check of a whole database gives.
    bool isWhole() {
        sqlite3_stmt* statement = nullptr;
        bool whole = false;
        if (sqlite3_prepare_v2(connection_, "PRAGMA integrity_check(1)", -1, &statement, nullptr) ==
                SQLITE_OK &&
            sqlite3_step(statement) == SQLITE_ROW) {
            const auto* text = sqlite3_column_text(statement, 0);
            whole = text != nullptr && std::string(reinterpret_cast<const char*>(text)) == "ok";
        }
        sqlite3_finalize(statement);
        return whole;
    }

private:
    sqlite3* connection_ = nullptr;
};

}  // namespace

FolderLock::FolderLock(const std::string& folder)
    : folder_(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC)) {
    if (folder_ >= 0) ::flock(folder_, LOCK_EX);
}

FolderLock::~FolderLock() {
    if (folder_ >= 0) ::close(folder_);
}

bool setAsideIfDamaged(const Place& place) {
    const FolderLock lock(place.folder);
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

void setOrphanedLogAside(const Place& place) {
    const std::string path = place.file();
    if (!exists(path) && exists(path + "-wal")) moveAside(path, freeName(path));
}

}  // namespace orvane::store

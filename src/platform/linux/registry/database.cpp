#include "platform/linux/registry/database.h"

#include <array>
#include <bit>
#include <cerrno>
#include <cstring>
#include <random>
#include <sched.h>
#include <sqlite3.h>
#include <thread>

namespace orvane::store {

static_assert(std::endian::native == std::endian::little, "texts are kept as little-endian UTF-16");

namespace {

// Numbers of keys are never used again: a handle of a key that was deleted must not become one of
// another key. Sub-keys and values come in the order of their numbers, which is that of their
// making. A key is found by its whole path in one step.
constexpr const char* kTables = R"(
CREATE TABLE keys(
    id INTEGER PRIMARY KEY AUTOINCREMENT,
    parent INTEGER NOT NULL,
    path BLOB NOT NULL UNIQUE,
    name BLOB NOT NULL);
CREATE INDEX keys_by_parent ON keys(parent, id);
CREATE TABLE entries(
    id INTEGER PRIMARY KEY,
    key INTEGER NOT NULL,
    folded BLOB NOT NULL,
    name BLOB NOT NULL,
    type INTEGER NOT NULL,
    data BLOB NOT NULL,
    UNIQUE(key, folded));
CREATE INDEX entries_by_key ON entries(key, id);
PRAGMA application_id=0x4F727661;
PRAGMA user_version=1;
)";

constexpr std::array<const char*, static_cast<std::size_t>(Sql::count_)> kSql{
    "BEGIN IMMEDIATE",
    "COMMIT",
    "ROLLBACK",
    "SAVEPOINT call",
    "RELEASE call",
    "ROLLBACK TO call",
    "PRAGMA data_version",
    "SELECT id FROM keys WHERE path=?",
    "SELECT 1 FROM keys WHERE id=?",
    "INSERT INTO keys(parent,path,name) VALUES(?,?,?)",
    "SELECT id,name FROM keys WHERE parent=? AND id>? ORDER BY id LIMIT 1 OFFSET ?",
    "SELECT path,name FROM keys WHERE parent=? ORDER BY id",
    "DELETE FROM keys WHERE path>=? AND path<?",
    "DELETE FROM keys WHERE id=?",
    "SELECT type,data,name FROM entries WHERE key=? AND folded=?",
    "INSERT INTO entries(key,folded,name,type,data) VALUES(?,?,?,?,?) "
    "ON CONFLICT(key,folded) DO UPDATE SET type=excluded.type,data=excluded.data",
    "DELETE FROM entries WHERE key=? AND folded=?",
    "SELECT id,name,type,data FROM entries WHERE key=? AND id>? ORDER BY id LIMIT 1 OFFSET ?",
    "SELECT folded,name FROM entries WHERE key=? ORDER BY id",
    "SELECT max(iif(type IN (1,2,7),length(data),0)),max(iif(type IN (1,2,7),0,length(data))) "
    "FROM entries WHERE key=?",
    "DELETE FROM entries WHERE key=?",
    "DELETE FROM entries WHERE key IN (SELECT id FROM keys WHERE path>=? AND path<?)",
};

/// Short and uneven, so that waiting processes come in turn; the first tries only step aside.
std::chrono::microseconds pause(int times) {
    thread_local std::minstd_rand random(std::random_device{}());
    const int most = std::min(100 + times * 20, 1500);
    return std::chrono::microseconds(std::uniform_int_distribution<int>(50, most)(random));
}

int pragmaNumber(sqlite3* connection, const char* sql, int& number) {
    sqlite3_stmt* statement = nullptr;
    int result = sqlite3_prepare_v2(connection, sql, -1, &statement, nullptr);
    if (result == SQLITE_OK) result = sqlite3_step(statement);
    if (result == SQLITE_ROW) {
        number = sqlite3_column_int(statement, 0);
        result = SQLITE_OK;
    }
    sqlite3_finalize(statement);
    return result;
}

/// A file that may not grow is no better than a disk that is full.
bool isNoRoom(int number) {
    return number == ENOSPC || number == EDQUOT || number == EFBIG;
}

/// The `errno` behind a failure to use a file. A statement that fails notes it for the connection;
/// a commit doesn't, but undoes its work without another failed call as a rule, so that `last`, the
/// number found after it, is still its own.
int systemError(sqlite3* connection, int result, int last) {
    const int primary = result & 0xFF;
    if (primary != SQLITE_IOERR && primary != SQLITE_CANTOPEN) return 0;
    return isNoRoom(last) ? last : sqlite3_system_errno(connection);
}

}  // namespace

bool Failure::isDamage() const {
    const int primary = result & 0xFF;
    // The last is a statement that asks for a table that isn't there.
    return primary == SQLITE_CORRUPT || primary == SQLITE_NOTADB || primary == SQLITE_ERROR;
}

bool Failure::isContention() const {
    const int primary = result & 0xFF;
    return primary == SQLITE_BUSY || primary == SQLITE_LOCKED || primary == SQLITE_PROTOCOL ||
           primary == SQLITE_SCHEMA;
}

bool Failure::isUnfinishedWork() const {
    return result == SQLITE_READONLY_ROLLBACK;
}

bool Failure::isAboutTheFilesBeside() const {
    const int primary = result & 0xFF;
    return primary == SQLITE_CANTOPEN || primary == SQLITE_READONLY || primary == SQLITE_FULL ||
           primary == SQLITE_IOERR;
}

Code Failure::code() const {
    if (isNoRoom(system)) return kDiskFull;
    if (system == EMFILE || system == ENFILE) return kTooManyOpenFiles;
    switch (result & 0xFF) {
    case SQLITE_FULL:
        return kDiskFull;
    case SQLITE_NOMEM:
        return kNoMemory;
    case SQLITE_READONLY:
    case SQLITE_CANTOPEN:
    case SQLITE_PERM:
    case SQLITE_AUTH:
        return kAccessDenied;
    case SQLITE_BUSY:
    case SQLITE_LOCKED:
    case SQLITE_PROTOCOL:
    case SQLITE_SCHEMA:
        return kBusy;
    case SQLITE_TOOBIG:
        return kNoMemory;
    case SQLITE_IOERR:
        return result == SQLITE_IOERR_READ || result == SQLITE_IOERR_SHORT_READ ? kCantRead
                                                                                : kCantWrite;
    default:
        return kBadDatabase;
    }
}

Bytes bytesOf(std::u16string_view text) {
    return {reinterpret_cast<const std::uint8_t*>(text.data()), text.size() * 2};
}

std::u16string textOf(Bytes bytes) {
    std::u16string text(bytes.size() / 2, u'\0');
    if (!text.empty()) std::memcpy(text.data(), bytes.data(), text.size() * 2);
    return text;
}

void Database::open(const std::string& path, Journal journal) {
    constexpr int kFlags = SQLITE_OPEN_READWRITE | SQLITE_OPEN_NOMUTEX | SQLITE_OPEN_EXRESCODE |
                           SQLITE_OPEN_PRIVATECACHE;
    // Falls back to reading where the user may not write.
    errno = 0;
    const int result = sqlite3_open_v2(path.c_str(), &connection_, kFlags, nullptr);
    try {
        if (result != SQLITE_OK) fail(result);
        sqlite3_busy_handler(connection_, &Database::wait, this);
        sqlite3_limit(connection_, SQLITE_LIMIT_WORKER_THREADS, 0);
        run("PRAGMA trusted_schema=OFF");
        prepareTables(journal);
        statements_.assign(kSql.size(), nullptr);
        // A table that lacks is found now, not when a key is already open.
        statement(Sql::findKey);
        statement(Sql::getValue);
    } catch (...) {
        close(false);
        throw;
    }
}

bool Database::isReadOnly() const {
    return sqlite3_db_readonly(connection_, "main") != 0;
}

bool Database::hasMoved() const {
    int moved = 0;
    sqlite3_file_control(connection_, "main", SQLITE_FCNTL_HAS_MOVED, &moved);
    return moved != 0;
}

void Database::close(bool tidy) {
    if (connection_ == nullptr) return;
    for (sqlite3_stmt* statement : statements_)
        sqlite3_finalize(statement);
    statements_.clear();
    if (!tidy) sqlite3_db_config(connection_, SQLITE_DBCONFIG_NO_CKPT_ON_CLOSE, 1, nullptr);
    sqlite3_close(connection_);
    connection_ = nullptr;
}

void Database::run(Sql sql) {
    Query(*this, sql).run();
}

void Database::run(const char* sql) {
    errno = 0;
    const int result = sqlite3_exec(connection_, sql, nullptr, nullptr, nullptr);
    if (result != SQLITE_OK) fail(result);
}

bool Database::isInTransaction() const {
    return sqlite3_get_autocommit(connection_) == 0;
}

std::uint64_t Database::version() {
    Query query(*this, Sql::dataVersion);
    query.step();
    const auto others = static_cast<std::uint64_t>(query.number(0));
    return others << 32 ^ static_cast<std::uint64_t>(sqlite3_total_changes(connection_));
}

std::int64_t Database::lastInsertedId() const {
    return sqlite3_last_insert_rowid(connection_);
}

void Database::fail(int result) const {
    const int last = errno;
    throw Failure{result, connection_ == nullptr ? 0 : systemError(connection_, result, last)};
}

sqlite3_stmt* Database::statement(Sql sql) {
    sqlite3_stmt*& kept = statements_[static_cast<std::size_t>(sql)];
    if (kept == nullptr) {
        const int result = sqlite3_prepare_v3(connection_, kSql[static_cast<std::size_t>(sql)], -1,
                                              SQLITE_PREPARE_PERSISTENT, &kept, nullptr);
        if (result != SQLITE_OK) fail(result);
    }
    return kept;
}

// A commit that returned has reached the system, so it survives the end of the process at any
// moment. The machine's few writes reach the disk, too: a rollback journal needs that to be whole
// after a power failure; the log is whole without.
void Database::prepareTables(Journal journal) {
    int version = 0;
    if (const int result = pragmaNumber(connection_, "PRAGMA user_version", version);
        result != SQLITE_OK) {
        fail(result);
    }
    run(journal == Journal::log ? "PRAGMA synchronous=NORMAL" : "PRAGMA synchronous=FULL");
    if (version == 0) {
        // Somebody else may be making the tables at this moment.
        run("BEGIN");
        version = ownVersion();
        run("COMMIT");
    }
    if (version == 0) {
        if (isReadOnly()) fail(SQLITE_CANTOPEN);
        if (journal == Journal::log) useLog();
        run("BEGIN IMMEDIATE");
        version = ownVersion();
        if (version == 0) run(kTables);
        run("COMMIT");
    }
    int application = kApplicationId;
    if (version != 0) pragmaNumber(connection_, "PRAGMA application_id", application);
    if (version > kSchemaVersion || application != kApplicationId) fail(SQLITE_MISUSE);
}

// A database without a version of ours that has a mark or tables is somebody else's.
int Database::ownVersion() {
    const auto number = [&](const char* sql) {
        int found = 0;
        const int result = pragmaNumber(connection_, sql, found);
        if (result != SQLITE_OK) fail(result);
        return found;
    };
    const int version = number("PRAGMA user_version");
    if (version == 0 && (number("PRAGMA application_id") != 0 ||
                         number("SELECT count(*) FROM sqlite_schema") != 0)) {
        fail(SQLITE_MISUSE);
    }
    return version;
}

// The change of the journal doesn't wait for others by itself.
void Database::useLog() {
    const auto end = std::chrono::steady_clock::now() + kLongestWait;
    for (;;) {
        const int result =
            sqlite3_exec(connection_, "PRAGMA journal_mode=WAL", nullptr, nullptr, nullptr);
        if (result == SQLITE_OK) return;
        if ((result & 0xFF) != SQLITE_BUSY || std::chrono::steady_clock::now() > end) fail(result);
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
}

int Database::wait(void* self, int times) {
    auto& database = *static_cast<Database*>(self);
    const auto now = std::chrono::steady_clock::now();
    if (times == 0) database.waitingSince_ = now;
    if (now - database.waitingSince_ > kLongestWait) return 0;
    if (times < 3) {
        ::sched_yield();
    } else {
        std::this_thread::sleep_for(pause(times));
    }
    return 1;
}

Query::~Query() {
    sqlite3_reset(statement_);
    sqlite3_clear_bindings(statement_);
}

Query& Query::bind(std::int64_t number) {
    sqlite3_bind_int64(statement_, ++bound_, number);
    return *this;
}

// A null address would bind NULL.
Query& Query::bind(Bytes bytes) {
    const void* data = bytes.empty() ? static_cast<const void*>("") : bytes.data();
    const int result = sqlite3_bind_blob64(statement_, ++bound_, data, bytes.size(), SQLITE_STATIC);
    if (result != SQLITE_OK) database_.fail(result);
    return *this;
}

bool Query::step() {
    errno = 0;
    const int result = sqlite3_step(statement_);
    if (result == SQLITE_ROW) return true;
    if (result == SQLITE_DONE) return false;
    database_.fail(result);
}

std::int64_t Query::number(int column) const {
    return sqlite3_column_int64(statement_, column);
}

Bytes Query::bytes(int column) const {
    const void* data = sqlite3_column_blob(statement_, column);
    return {static_cast<const std::uint8_t*>(data),
            static_cast<std::size_t>(sqlite3_column_bytes(statement_, column))};
}

}  // namespace orvane::store

#pragma once

#include "platform/linux/registry/codes.h"

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

struct sqlite3;
struct sqlite3_stmt;

namespace orvane::store {

/// "Orva": the file is ours, whatever it is called.
inline constexpr int kApplicationId = 0x4F727661;
inline constexpr int kSchemaVersion = 1;

/// How long a call waits for other processes before it gives up.
inline constexpr std::chrono::seconds kLongestWait{30};

/// What went wrong in a database: its extended result, and the system's `errno` behind a failed
/// access to a file.
struct Failure {
    int result;
    int system;

    /// The file is no database, contradicts itself or lacks one of our tables.
    bool isDamage() const;
    /// Another process was in the way for as long as we wait, or for a moment that can't be waited
    /// out.
    bool isContention() const;
    /// A writer died in the middle of its work, and this user may not undo it.
    bool isUnfinishedWork() const;
    /// The files that a reader needs beside a database with a log can't be made or written to.
    bool isAboutTheFilesBeside() const;
    /// The platform's code for it.
    Code code() const;
};

using Bytes = std::span<const std::uint8_t>;

/// The units of a text as the bytes that a database keeps.
Bytes bytesOf(std::u16string_view text);
/// The way back; the bytes are not aligned.
std::u16string textOf(Bytes bytes);

/// The statements that are kept prepared, `kSql` has their texts.
enum class Sql : std::uint8_t {
    begin,
    commit,
    rollback,
    savepoint,
    release,
    rollbackTo,
    dataVersion,
    findKey,
    keyIsThere,
    addKey,
    subKey,
    subKeys,
    removeKeys,
    removeKey,
    getValue,
    putValue,
    removeValue,
    value,
    valueNames,
    longestValues,
    removeValues,
    removeValuesBelow,
    count_
};

/// One connection to a database file.
class Database {
public:
    enum class Journal : std::uint8_t {
        /// Readers and a writer at the same time; readers need to write to the folder.
        log,
        /// Readers without rights in the folder can read.
        rollback
    };

    Database() = default;
    ~Database() { close(true); }
    Database(const Database&) = delete;
    Database& operator=(const Database&) = delete;

    /// Opens the file, which is there, and gives an empty one its tables. Throws `Failure`; the
    /// database is closed then.
    void open(const std::string& path, Journal journal);
    bool isOpen() const { return connection_ != nullptr; }
    bool isReadOnly() const;
    /// The file under the database's name is another one by now, or none.
    bool hasMoved() const;
    /// Closes it; `tidy` carries the log over into the file when nobody else has it open.
    void close(bool tidy);

    /// Runs a statement that gives nothing. Throws `Failure`.
    void run(Sql sql);
    void run(const char* sql);
    bool isInTransaction() const;
    /// A number that differs whenever somebody has changed the database.
    std::uint64_t version();
    std::int64_t lastInsertedId() const;

private:
    friend class Query;

    [[noreturn]] void fail(int result) const;
    sqlite3_stmt* statement(Sql sql);
    void prepareTables(Journal journal);
    int ownVersion();
    void useLog();
    static int wait(void* self, int times);

    sqlite3* connection_ = nullptr;
    std::vector<sqlite3_stmt*> statements_;
    std::chrono::steady_clock::time_point waitingSince_;
};

/// A run of a prepared statement, reset at its end. Bound bytes must live as long.
class Query {
public:
    Query(Database& database, Sql sql) : database_(database), statement_(database.statement(sql)) {}
    ~Query();
    Query(const Query&) = delete;
    Query& operator=(const Query&) = delete;

    Query& bind(std::int64_t number);
    Query& bind(Bytes bytes);
    Query& bind(std::u16string_view text) { return bind(bytesOf(text)); }

    /// True when there is a row; throws `Failure`.
    bool step();
    /// Runs it to its end.
    void run() {
        while (step()) {
        }
    }
    std::int64_t number(int column) const;
    /// Good until the next step.
    Bytes bytes(int column) const;

private:
    Database& database_;
    sqlite3_stmt* statement_;
    int bound_ = 0;
};

}  // namespace orvane::store

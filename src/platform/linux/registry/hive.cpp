#include "platform/linux/registry/hive.h"

#include "platform/linux/registry/copy.h"
#include "platform/linux/registry/damage.h"

#include <cerrno>
#include <sys/stat.h>
#include <unistd.h>

namespace orvane::store {

namespace {

using Clock = std::chrono::steady_clock;

Code codeOfErrno(int number) {
    switch (number) {
    case ENOSPC:
    case EDQUOT:
        return kDiskFull;
    case EMFILE:
    case ENFILE:
        return kTooManyOpenFiles;
    case EWOULDBLOCK:
    case EINTR:
        return kBusy;
    case ENOMEM:
        return kNoMemory;
    case EACCES:
    case EPERM:
    case EROFS:
    case ENOENT:
        return kAccessDenied;
    default:
        return kCantOpen;
    }
}

/// A file without bytes: whoever made it has not written to it yet.
bool isEmpty(const std::string& path) {
    struct stat facts {};
    return ::stat(path.c_str(), &facts) == 0 && facts.st_size == 0;
}

/// Thrown where a body has its code already.
struct Done {
    Code code;
};

}  // namespace

void Take::operator()(Bytes name, std::int64_t type, Bytes data) const {
    const std::u16string text = textOf(name);
    take(context, reinterpret_cast<const std::uint16_t*>(text.data()),
         static_cast<std::uint32_t>(text.size()), static_cast<std::uint32_t>(type), data.data(),
         data.size());
}

std::u16string joined(std::u16string_view base, std::u16string_view path) {
    std::u16string whole(base);
    if (!base.empty() && !path.empty()) whole += u'\\';
    whole += path;
    return whole;
}

Code Hive::open(const KeyPlace& base, std::u16string_view path, std::int64_t& id) {
    id = base.id;
    if (path.empty() && base.id == 0) return kSuccess;
    return read([&] {
        if (const Code gone = checkThere(base); gone != kSuccess || path.empty()) return gone;
        const auto found = find(joined(base.path, path));
        id = found.value_or(0);
        return found ? kSuccess : kNotFound;
    });
}

Code Hive::create(const KeyPlace& base, const Name& path, std::int64_t& id, bool& created) {
    created = false;
    if (const Code code = open(base, path.folded, id); code != kNotFound) return code;
    return write([&] {
        if (const Code gone = checkThere(base); gone != kSuccess) return gone;
        const auto found = find(joined(base.path, path.folded));
        created = !found;
        id = found ? *found : makeKeys(base.path, base.id, path);
        return kSuccess;
    });
}

Code Hive::checkWritable() {
    const Code code = read([] { return kSuccess; });
    if (code != kSuccess && code != kNotFound) return code;
    const bool writable = database_.isOpen() ? !database_.isReadOnly() : isWritable(placeNow_());
    return writable ? kSuccess : kAccessDenied;
}

Code Hive::query(const KeyPlace& key, std::u16string_view name, const Take& take) {
    return read([&] {
        Query query(database_, Sql::getValue);
        query.bind(key.id).bind(name);
        if (query.step()) {
            take(query.bytes(2), query.number(0), query.bytes(1));
            return kSuccess;
        }
        const Code gone = checkThere(key);
        return gone == kSuccess ? kNotFound : gone;
    });
}

Code Hive::set(const KeyPlace& key, const Name& name, std::uint32_t type, Bytes data) {
    return write([&] {
        if (const Code gone = checkThere(key); gone != kSuccess) return gone;
        Query(database_, Sql::putValue)
            .bind(key.id)
            .bind(name.folded)
            .bind(name.spelled)
            .bind(std::int64_t{type})
            .bind(data)
            .run();
        return kSuccess;
    });
}

Code Hive::deleteValue(const KeyPlace& key, std::u16string_view name) {
    const Code there = query(key, name, Take{[](auto...) {}, nullptr});
    if (there != kSuccess) return there;
    return write([&] {
        if (const Code gone = checkThere(key); gone != kSuccess) return gone;
        bool found = false;
        {
            Query query(database_, Sql::getValue);
            found = query.bind(key.id).bind(name).step();
        }
        if (!found) return kNotFound;
        Query(database_, Sql::removeValue).bind(key.id).bind(name).run();
        return kSuccess;
    });
}

Code Hive::content(const KeyPlace& key, KeyContent& found) {
    found = {};
    const Code code = read([&] {
        // While this statement is open the others see what it sees.
        Query longest(database_, Sql::longestValues);
        longest.bind(key.id).step();
        if (const Code gone = checkThere(key); gone != kSuccess) return gone;
        found = {namesIn(Sql::subKeys, key), namesIn(Sql::valueNames, key),
                 static_cast<std::uint32_t>(longest.number(0)),
                 static_cast<std::uint32_t>(longest.number(1))};
        return kSuccess;
    });
    return code == kNotFound && key.id == 0 ? kSuccess : code;
}

Code Hive::subKey(const KeyPlace& key, std::uint32_t index, const Take& take) {
    return atPlace(Sql::subKey, key, index, [&](Query& row) { take(row.bytes(1), 0, {}); });
}

Code Hive::value(const KeyPlace& key, std::uint32_t index, bool withData, const Take& take) {
    return atPlace(Sql::value, key, index, [&](Query& row) {
        take(row.bytes(1), row.number(2), withData ? row.bytes(3) : Bytes{});
    });
}

Code Hive::deleteEmpty(const KeyPlace& base, std::u16string_view path) {
    const std::u16string whole = joined(base.path, path);
    std::int64_t id = 0;
    if (const Code code = open(base, path, id); code != kSuccess) return code;
    if (whole.empty()) {
        KeyContent found;
        const Code code = content({0, {}}, found);
        return code == kSuccess && !found.subKeys.empty() ? kHasChildren : kAccessDenied;
    }
    return write([&] {
        const auto found = find(whole);
        if (!found) return kNotFound;
        {
            Query children(database_, Sql::subKeys);
            if (children.bind(*found).step()) return kHasChildren;
        }
        Query(database_, Sql::removeValues).bind(*found).run();
        Query(database_, Sql::removeKey).bind(*found).run();
        return kSuccess;
    });
}

Code Hive::deleteTree(const KeyPlace& base, std::u16string_view path) {
    const std::u16string whole = joined(base.path, path);
    std::int64_t id = 0;
    if (const Code code = open(base, path, id); code != kSuccess) return code;
    return write([&] {
        const auto found = whole.empty() ? std::optional<std::int64_t>(0) : find(whole);
        if (!found) return kNotFound;
        removeBelow(whole);
        Query(database_, Sql::removeValues).bind(*found).run();
        if (!path.empty()) Query(database_, Sql::removeKey).bind(*found).run();
        return kSuccess;
    });
}

Code Hive::claim() {
    return attempt([&] {
        if (!makeReady(false) || database_.isReadOnly()) return kSuccess;
        return inOneTransaction([] { return kSuccess; });
    });
}

Code Hive::moment(Moment& now) {
    now = {};
    const Code code = read([&] {
        now = {epoch_, database_.version()};
        return kSuccess;
    });
    return code == kNotFound ? kSuccess : code;
}

Code Hive::commit() {
    Code code = isLost_ ? kTransactionLost : kSuccess;
    try {
        if (hasBegun_) database_.run(Sql::commit);
    } catch (const Failure& failure) {
        code = failure.code();
    }
    rollback();
    return code;
}

void Hive::rollback() {
    undo();
    inTransaction_ = false;
    hasBegun_ = false;
    isLost_ = false;
}

void Hive::undo() {
    if (!database_.isOpen() || !database_.isInTransaction()) return;
    ++epoch_;
    try {
        database_.run(Sql::rollback);
    } catch (const Failure&) {
        // Closing undoes it as well.
        database_.close(false);
    }
}

void Hive::abandon() {
    undo();
    isLost_ = hasBegun_;
    hasBegun_ = false;
    close(false);
}

void Hive::close(bool tidy) {
    database_.close(tidy);
    cursor_ = {};
    ++epoch_;
}

Code Hive::read(const std::function<Code()>& body) {
    return attempt([&] {
        try {
            return makeReady(false) ? body() : kNotFound;
        } catch (const Failure& failure) {
            if (hasBegun_ || !needsCopy(failure)) throw;
            try {
                return readCopy(body);
            } catch (const Failure& ofCopy) {
                if (ofCopy.isContention() || failure.isUnfinishedWork()) throw;
            }
            throw;
        }
    });
}

/// The database can be read, but not where it lies.
bool Hive::needsCopy(const Failure& failure) const {
    return failure.isUnfinishedWork() ||
           (journal_ == Database::Journal::log && failure.isAboutTheFilesBeside());
}

/// Reads what was committed last; the next call looks again whether the database itself can be
/// read.
Code Hive::readCopy(const std::function<Code()>& body) {
    struct Closing {
        Hive& hive;
        ~Closing() { hive.close(false); }
    };
    close(false);
    const Closing closing{*this};
    openCopy(database_, place_, journal_);
    return body();
}

Code Hive::write(const std::function<Code()>& body) {
    return attempt([&] {
        makeReady(true);
        if (database_.isReadOnly()) return kAccessDenied;
        return inOneTransaction(body);
    });
}

/// Runs a body again where that helps: after contention for as long as we wait, once after damage,
/// and when the file under the database was another one.
Code Hive::attempt(const std::function<Code()>& body) {
    if (isLost_) return kTransactionLost;
    const auto end = Clock::now() + kLongestWait;
    bool mended = false;
    for (;;) {
        try {
            return body();
        } catch (const Done& done) {
            return done.code;
        } catch (const Failure& failure) {
            undo();
            if (hasBegun_) {
                isLost_ = true;
                hasBegun_ = false;
                return failure.code();
            }
            if (failure.isDamage() && !mended) {
                close(false);
                mended = setAsideIfDamaged(place_);
                if (mended) continue;
            } else if (failure.isContention() && Clock::now() < end) {
                ::usleep(1000);
                continue;
            }
            return failure.code();
        }
    }
}

Code Hive::inOneTransaction(const std::function<Code()>& body) {
    if (!hasBegun_) {
        database_.run(Sql::begin);
        // Who set the file aside held the lock until now.
        if (database_.hasMoved()) {
            database_.run(Sql::rollback);
            close(false);
            makeReady(true);
            if (database_.isReadOnly()) return kAccessDenied;
            database_.run(Sql::begin);
        }
        hasBegun_ = inTransaction_;
    }
    if (!inTransaction_) {
        const Code code = body();
        database_.run(code == kSuccess ? Sql::commit : Sql::rollback);
        if (code != kSuccess) ++epoch_;
        return code;
    }
    database_.run(Sql::savepoint);
    const Code code = body();
    if (code != kSuccess) {
        database_.run(Sql::rollbackTo);
        ++epoch_;
    }
    database_.run(Sql::release);
    return code;
}

/// Opens the database. False when there is none and nothing is to be written.
bool Hive::makeReady(bool forWriting) {
    if (database_.isOpen()) {
        if (database_.isInTransaction() || !database_.hasMoved()) return true;
        close(false);
    }
    place_ = placeNow_();
    const bool isAbsent = place_.folder.empty() || ::access(place_.file().c_str(), F_OK) != 0;
    if (!forWriting && (isAbsent || isEmpty(place_.file()))) return false;
    if (isAbsent || hasOrphanedLog(place_)) {
        if (const int failure = makeFolders(place_); failure != 0) throw Done{codeOfErrno(failure)};
        const FolderLock lock(place_.folder);
        if (const int failure = lock.failure(); failure != 0) throw Done{codeOfErrno(failure)};
        if (hasOrphanedLog(place_) && !setOrphanedLogAside(place_)) throw Done{kAccessDenied};
        if (const int failure = makeFile(place_); failure != 0) throw Done{codeOfErrno(failure)};
    }
    cursor_ = {};
    database_.open(place_.file(), journal_);
    return true;
}

/// A row by its place: counted from the one before when that was asked for last and nothing has
/// changed since, so that a walk over a list looks at each row once.
Code Hive::atPlace(Sql list, const KeyPlace& key, std::uint32_t index,
                   const std::function<void(Query&)>& take) {
    const Code code = read([&] {
        const Moment now{epoch_, database_.version()};
        const bool goesOn = cursor_.list == list && cursor_.key == key.id &&
                            cursor_.moment == now && index == cursor_.index + 1;
        Query row(database_, list);
        row.bind(key.id).bind(goesOn ? cursor_.id : 0).bind(std::int64_t{goesOn ? 0 : index});
        if (!row.step()) {
            const Code gone = checkThere(key);
            return gone == kSuccess ? kNoMoreItems : gone;
        }
        cursor_ = {list, key.id, index, row.number(0), now};
        take(row);
        return kSuccess;
    });
    return code == kNotFound ? kNoMoreItems : code;
}

bool Hive::isThere(std::int64_t id) {
    return id == 0 || Query(database_, Sql::keyIsThere).bind(id).step();
}

Code Hive::checkThere(const KeyPlace& key) {
    return isThere(key.id) ? kSuccess : kKeyDeleted;
}

std::optional<std::int64_t> Hive::find(std::u16string_view path) {
    Query query(database_, Sql::findKey);
    if (!query.bind(path).step()) return std::nullopt;
    return query.number(0);
}

Code Hive::names(Sql list, const KeyPlace& key, std::vector<KeptName>& found) {
    found.clear();
    const Code code = read([&] {
        found = namesIn(list, key);
        return kSuccess;
    });
    return code == kNotFound ? kSuccess : code;
}

std::vector<KeptName> Hive::namesIn(Sql list, const KeyPlace& key) {
    std::vector<KeptName> found;
    Query query(database_, list);
    query.bind(key.id);
    while (query.step())
        found.push_back({textOf(query.bytes(0)), textOf(query.bytes(1))});
    return found;
}

/// Takes away all keys below a path with their values. Paths are compared as bytes, so those lie
/// between the path with a backslash and the path with what follows a backslash.
void Hive::removeBelow(std::u16string_view path) {
    std::u16string from(path);
    std::u16string to(path);
    if (path.empty()) {
        to.assign(8, u'\xFFFF');
    } else {
        from += u'\\';
        to += static_cast<char16_t>(u'\\' + 0x100);
    }
    Query(database_, Sql::removeValuesBelow).bind(from).bind(to).run();
    Query(database_, Sql::removeKeys).bind(from).bind(to).run();
}

/// Makes the keys of a path below a base that are missing; gives the number of the last.
std::int64_t Hive::makeKeys(std::u16string_view base, std::int64_t baseId, const Name& path) {
    std::int64_t parent = baseId;
    std::size_t start = 0;
    while (start < path.folded.size()) {
        std::size_t end = path.folded.find(u'\\', start);
        if (end == std::u16string_view::npos) end = path.folded.size();
        const std::u16string whole = joined(base, path.folded.substr(0, end));
        if (const auto found = find(whole)) {
            parent = *found;
        } else {
            Query(database_, Sql::addKey)
                .bind(parent)
                .bind(whole)
                .bind(path.spelled.substr(start, end - start))
                .run();
            parent = database_.lastInsertedId();
        }
        start = end + 1;
    }
    return parent;
}

}  // namespace orvane::store

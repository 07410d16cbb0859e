#include "utilities/collections.h"

#include "frame/errors.h"
#include "utilities/search.h"

namespace orvane {
namespace {

std::int32_t countOf(const Object& collection) {
    return toLong(collection.get(u"Count"));
}

Variant itemOf(const Object& collection, std::int32_t position) {
    return collection.get(u"Item", {position});
}

/// Joins the items; `statement` runs each step and decides what becomes of its error.
template <class Statement>
WString joined(const Object& source, WStringView delimiter, Statement&& statement) {
    WString text;
    std::int32_t count = 0;
    statement([&] { count = countOf(source); });
    for (std::int64_t next = 1; next <= count; ++next) {
        const auto position = static_cast<std::int32_t>(next);
        statement([&] { text += toText(itemOf(source, position)); });
        if (position < count) statement([&] { text += delimiter; });
    }
    return text;
}

}  // namespace

std::int32_t InCollection(const Object& collection, const Variant& findWhat, const Variant& startAt,
                          const Variant& endAt, bool& isFound) {
    return search(
        findWhat, startAt, endAt, isFound, [] { return 1; }, [&] { return countOf(collection); },
        [&](std::int32_t position) { return itemOf(collection, position); });
}

bool IsInCollection(const Object& collection, const Variant& findWhat, const Variant& startAt,
                    const Variant& endAt) {
    bool isFound = false;
    InCollection(collection, findWhat, startAt, endAt, isFound);
    return isFound;
}

WString JoinCollection(const Object& source, WStringView delimiter, bool raiseErrors) {
    if (raiseErrors) return joined(source, delimiter, [](auto&& step) { step(); });
    ErrorTrap trap;
    return joined(source, delimiter, trap);
}

}  // namespace orvane

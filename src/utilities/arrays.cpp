#include "utilities/arrays.h"

#include "frame/errors.h"
#include "utilities/search.h"

namespace orvane {
namespace {

template <class T>
Array<T> converted(const Array<Variant>& args) {
    ErrorTrap trap;
    std::int32_t lower = 0;
    std::int32_t upper = 0;
    if (!trap([&] {
            lower = args.lowerBound();
            upper = args.upperBound();
        })) {
        return {};
    }
    Array<T> result;
    if (!trap([&] { result = Array<T>(lower, upper); })) return {};
    for (std::int64_t next = lower; next <= upper; ++next) {
        const auto index = static_cast<std::int32_t>(next);
        trap([&] { result.at(index) = convertTo<T>(args.at(index)); });
    }
    return result;
}

}  // namespace

Array<WString> ArrayBSTR(const Array<Variant>& args) {
    return converted<WString>(args);
}

Array<std::int32_t> ArrayLong(const Array<Variant>& args) {
    return converted<std::int32_t>(args);
}

std::int32_t InArray(const Array<std::int32_t>& array, const Variant& findWhat,
                     const Variant& startAt, const Variant& endAt, bool& isFound) {
    return search(
        findWhat, startAt, endAt, isFound, [&] { return array.lowerBound(); },
        [&] { return array.upperBound(); },
        [&](std::int32_t index) { return Variant(array.at(index)); });
}

bool IsInArray(const Array<std::int32_t>& array, const Variant& findWhat, const Variant& startAt,
               const Variant& endAt) {
    bool isFound = false;
    InArray(array, findWhat, startAt, endAt, isFound);
    return isFound;
}

}  // namespace orvane

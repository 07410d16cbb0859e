#include "frame/values/compare.h"
#include "utilities/quick_sort.h"
#include "utilities/quick_sort_range.h"

#include <algorithm>
#include <type_traits>

namespace orvane {
namespace {

/// Values of which any two compare one way or the other, with no side effect and no error.
bool isPlain(const Variant& value) {
    return value.visit([](const auto& content) {
        using T = std::decay_t<decltype(content)>;
        if constexpr (std::is_floating_point_v<T>) return content == content;
        else if constexpr (std::is_same_v<T, Date>) return content.days == content.days;
        else
            return std::is_same_v<T, std::monostate> || std::is_arithmetic_v<T> ||
                   std::is_same_v<T, Currency> || std::is_same_v<T, WString>;
    });
}

/// Plain values. The left scan goes on behind its last place and the right one before its own,
/// which stops both where they would stop from the ends (`block_partition.h` tells why).
class PlainElements : public SortedElements<Variant> {
public:
    PlainElements(Variant* elements, std::int32_t lower, bool sameType)
        : SortedElements(elements, lower), sameType_(sameType) {}

    bool isAbove(std::size_t i, std::size_t j) const {
        return isGreater(elements_[i], elements_[j]);
    }

    std::size_t partition(std::size_t low, std::size_t high) {
        const Variant& pivot = elements_[high];  // its place is never exchanged
        std::size_t i = low;
        std::size_t j = high;
        std::size_t end = high;
        for (;;) {
            while (i < end && isLessEqual(elements_[i], pivot))
                ++i;
            while (j > i && isGreaterEqual(elements_[j], pivot))
                --j;
            if (i >= j) return i;
            exchange(i, j);
            end = j;
        }
    }

    // Values of several types can all equal one and not each other: 1, "1" and "1.0".
    bool isAllEqual(std::size_t low, std::size_t high) const {
        return sameType_ &&
               std::all_of(elements_ + low, elements_ + high, [&](const Variant& each) {
                   return isGreaterEqual(each, elements_[high]);
               });
    }

private:
    bool sameType_;
};

/// Any values: every comparison of the two scans is made, because objects see it, Error values and
/// arrays raise it, and Null stops either scan wherever it stands.
class AnyElements : public SortedElements<Variant> {
public:
    using SortedElements::SortedElements;

    bool isAbove(std::size_t i, std::size_t j) const {
        return isGreater(elements_[i], elements_[j]);
    }

    std::size_t partition(std::size_t low, std::size_t high) {
        const Variant pivot = elements_[high];
        std::size_t lastI = high;
        std::size_t lastJ = low;
        for (;;) {
            std::size_t i = low;
            std::size_t j = high;
            while (isLessEqual(elements_[i], pivot) && i < j)
                ++i;
            while (isGreaterEqual(elements_[j], pivot) && j > i)
                --j;
            // Two elements that compare with nothing would change places for ever.
            if (i >= j || (i == lastI && j == lastJ)) return i;
            exchange(i, j);
            lastI = i;
            lastJ = j;
        }
    }

    bool isAllEqual(std::size_t, std::size_t) const { return false; }
};

}  // namespace

void quickSort(std::span<Variant> elements, std::int32_t lower) {
    if (elements.size() < 2) return;
    const std::size_t high = elements.size() - 1;
    if (!std::ranges::all_of(elements, isPlain)) {
        AnyElements range(elements.data(), lower);
        return quickSortRange(range, 0, high);
    }
    const VarType type = elements[0].type();
    const bool sameType =
        std::ranges::all_of(elements, [&](const Variant& each) { return each.type() == type; });
    PlainElements range(elements.data(), lower, sameType);
    quickSortRange(range, 0, high);
}

}  // namespace orvane

#pragma once

#include "frame/values/collection.h"
#include "frame/values/conversions.h"
#include "frame/values/text.h"

#include <algorithm>
#include <string>

/// The comparison and the order of versions in their plainest form: what the library's must agree
/// with for every text.
namespace orvane::test {

inline std::int32_t referencePart(const std::u16string& part) {
    if (part.empty() || part.find_first_not_of(u"1234567890") != std::u16string::npos) return 0;
    try {
        return textToLong(part);
    } catch (const RuntimeError&) {
        return 0;
    }
}

inline std::int32_t referenceCompare(std::u16string first, std::u16string second) {
    const auto dots = [](const std::u16string& text) { return std::ranges::count(text, u'.'); };
    while (dots(first) < dots(second))
        first += u".0";
    while (dots(second) < dots(first))
        second += u".0";
    const auto nextPart = [](std::u16string& rest) {
        const std::size_t end = std::min(rest.find(u'.'), rest.size());
        const std::int32_t number = referencePart(rest.substr(0, end));
        rest.erase(0, end + 1);
        return number;
    };
    for (auto parts = dots(first) + 1; parts > 0; --parts) {
        const std::int32_t left = nextPart(first);
        const std::int32_t right = nextPart(second);
        if (left < right) return 2;
        if (left > right) return 1;
    }
    return 0;
}

/// A selection sort that keeps the first of equal items.
inline void referenceSort(Collection& versions) {
    Collection sorted;
    while (versions.count() > 0) {
        std::int32_t best = 1;
        for (std::int32_t index = 2; index <= versions.count(); ++index) {
            if (referenceCompare(toText(versions.item(index)).units(),
                                 toText(versions.item(best)).units()) == 2) {
                best = index;
            }
        }
        sorted.add(versions.item(best));
        versions.remove(best);
    }
    versions = std::move(sorted);
}

}  // namespace orvane::test

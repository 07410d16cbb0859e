#include "settings/settings_versions.h"

#include "frame/values/conversions.h"
#include "frame/values/text.h"
#include "support/text.h"

#include <algorithm>
#include <limits>
#include <utility>
#include <vector>

namespace orvane {
namespace {

constexpr WStringView kVersionMark = u"VERSION ";
constexpr std::int32_t kMarkLength = 8;

/// The parts as numbers, without the zeros at the end: equal versions have equal parts, and
/// comparing the lists compares the versions.
using Parts = std::vector<std::int32_t>;

Parts partsOf(WStringView text) {
    Parts parts;
    for (std::size_t start = 0; start <= text.size();) {
        const std::size_t dot = std::min(text.find(u'.', start), text.size());
        parts.push_back(VersionPartToLong(text.substr(start, dot - start)));
        start = dot + 1;
    }
    while (!parts.empty() && parts.back() == 0)
        parts.pop_back();
    return parts;
}

bool namesAVersion(WStringView name) {
    return uCase(left(name, kMarkLength)) == kVersionMark;
}

}  // namespace

std::int32_t VersionPartToLong(WStringView text) {
    std::int64_t number = 0;
    for (const char16_t unit : text) {
        if (unit < u'0' || unit > u'9') return 0;
        // Leading zeros take no room, so a long part is only read as far as it still can fit.
        if (number <= std::numeric_limits<std::int32_t>::max())
            number = number * 10 + (unit - u'0');
    }
    return std::in_range<std::int32_t>(number) ? static_cast<std::int32_t>(number) : 0;
}

std::int32_t CompareVersions(WStringView first, WStringView second) {
    const Parts left = partsOf(first);
    const Parts right = partsOf(second);
    if (left == right) return 0;
    return left > right ? 1 : 2;
}

// Stable, so that it ends as a selection sort that keeps the first of equal items does.
void SortVersions(Collection& versions) {
    struct Version {
        WString text;
        Parts parts;
    };
    std::vector<Version> sorted;
    for (std::int32_t index = 1; index <= versions.count(); ++index) {
        WString text = toText(versions.item(index));
        Parts parts = partsOf(text);
        sorted.push_back({std::move(text), std::move(parts)});
    }
    std::ranges::stable_sort(sorted, {}, &Version::parts);
    Collection result;
    for (Version& version : sorted)
        result.add(std::move(version.text));
    versions = std::move(result);
}

WString newestVersionBefore(WStringView current, const Collection& keyNames) {
    Collection versions;
    for (std::int32_t index = 1; index <= keyNames.count(); ++index) {
        const WString name = nqTrimEx(toText(keyNames.item(index)));
        if (namesAVersion(name)) versions.add(nqTrimEx(nqCutLeft(name, kMarkLength)));
    }
    SortVersions(versions);
    for (std::int32_t index = versions.count(); index >= 1; --index) {
        WString version = toText(versions.item(index));
        if (CompareVersions(current, version) == 1) return version;
    }
    return {};
}

}  // namespace orvane

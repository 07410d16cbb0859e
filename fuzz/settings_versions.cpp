#include "settings/settings_versions.h"

#include "settings/versions_reference.h"
#include "target.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>

/// Version texts, one a line: comparison and order are the reference's, and the newest version
/// before the first line's is older than that and not older than any other that is. Each byte is a
/// unit, which leaves the characters that decide something within the fuzzer's reach.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace orvane;
    constexpr std::size_t kMostBytes = 512;
    const std::u16string input(data, data + std::min(size, kMostBytes));
    Collection versions;
    Collection reference;
    Collection keys;
    for (std::size_t start = 0; start <= input.size();) {
        const std::size_t end = std::min(input.find(u'\n', start), input.size());
        const WString text(input.substr(start, end - start));
        versions.add(text);
        reference.add(text);
        keys.add(u"Version " + text);
        start = end + 1;
    }
    const WString current = toText(versions.item(1));
    for (std::int32_t index = 1; index <= versions.count(); ++index) {
        const WString other = toText(versions.item(index));
        require(CompareVersions(current, other) ==
                test::referenceCompare(current.units(), other.units()));
    }

    SortVersions(versions);
    test::referenceSort(reference);
    require(versions.count() == reference.count());
    for (std::int32_t index = 1; index <= versions.count(); ++index)
        require(toText(versions.item(index)) == toText(reference.item(index)));

    const WString before = newestVersionBefore(current, keys);
    require(before.empty() || CompareVersions(current, before) == 1);
    return 0;
}

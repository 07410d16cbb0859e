#pragma once

#include "frame/values/collection.h"
#include "frame/values/wstring.h"

#include <cstdint>

namespace orvane {

/// The versions in the names of settings keys. A version text is parts between dots; it may have
/// any number of them, and a missing one counts as 0, so "1.2" and "1.2.0" are the same version.

/// The number of one dotted part. A part that is empty, holds anything but the digits 0 to 9, or is
/// too long for a Long counts as 0.
std::int32_t VersionPartToLong(WStringView text);

/// 0 when the versions are equal, 1 when `first` is the newer one, 2 when it is the older one.
std::int32_t CompareVersions(WStringView first, WStringView second);

/// Puts version texts into ascending order; of equal ones the first stays first. Afterwards none of
/// the items has a key.
void SortVersions(Collection& versions);

/// The text of the newest version older than `current` among the names of an application's settings
/// keys, "" when there is none. A key stands for a version when its name, cleaned with `nqTrimEx`,
/// begins with "Version " in whatever case; the rest, cleaned again, is the version text. Of equal
/// versions the last name counts.
WString newestVersionBefore(WStringView current, const Collection& keyNames);

}  // namespace orvane

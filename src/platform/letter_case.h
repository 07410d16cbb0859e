#pragma once

namespace orvane::platform {

/// The upper or lower case of a unit: the simple, one-to-one pairs of the basic plane, the same on
/// every platform and in every locale. Texts of the value layer and the names of registry keys
/// follow the same pairs.
char16_t upperUnit(char16_t unit);
char16_t lowerUnit(char16_t unit);

}  // namespace orvane::platform

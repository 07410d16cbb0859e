#pragma once

#include "frame/values/font.h"
#include "settings/orvRegistry.h"

#include <cstdint>

namespace orvane {

/// One place in the registry for the settings of every application of the family: a key for each
/// application and version under the maker's key, in `HKEY_CURRENT_USER` or, with `userSetting`
/// False, in `HKEY_LOCAL_MACHINE`. A new version finds the settings of the version before it; what
/// it saves goes to its own key.
///
/// A member has up to two forms: one with title and version as arguments, and one whose name ends
/// in 2, which reads `Title`, `Major` and `Minor` of the host's application object, in this order,
/// and does the same with them.
///
/// Failures of the registry raise nothing. A negative version number raises 5, reading an
/// application object that was left out 91, and a stored value of no bytes 9. A member that this
/// version does not carry out raises 445.
class orvOrvaneSettings final : public automation::AutomationObject {
public:
    static const automation::ClassTable& table();

    orvOrvaneSettings();

    /// The path of a settings key below the root, with `keyPath` behind it as it stands.
    WString GetSettingPath(WStringView appTitle, std::int32_t verMajor, std::int32_t verMinor,
                           WStringView keyPath);

    /// Reads a value of the version's own key `subKey`. Where that fails, and the version is not
    /// 0.0, it reads the key of the newest older version that is stored; no other version is tried.
    /// Where that fails, too, `success` is False, and the result is `fallback` as it stands or,
    /// with that left out, the empty value of the type.
    Variant LoadSetting(WStringView subKey, WStringView valueName, RegistryType_Const valueType,
                        WStringView appTitle, std::int32_t verMajor, std::int32_t verMinor,
                        const Variant& fallback, bool userSetting, bool& success);

    /// Writes a value into the version's own key, which is made if it is not there. False when
    /// `value` was left out, is not of the type, or can't be written.
    bool SaveSetting(WStringView subKey, WStringView valueName, RegistryType_Const valueType,
                     const Variant& value, WStringView appTitle, std::int32_t verMajor,
                     std::int32_t verMinor, bool userSetting);

    bool SaveFormPlacement(const Object& formObject, WStringView subKey, WStringView valueName,
                           WStringView appTitle, std::int32_t verMajor, std::int32_t verMinor,
                           bool userSetting);
    bool LoadFormPlacement(const Object& formObject, WStringView subKey, WStringView valueName,
                           WStringView appTitle, std::int32_t verMajor, std::int32_t verMinor,
                           bool setMinimized, std::int32_t fixedWidth, std::int32_t fixedHeight,
                           bool userSetting);

    WString GetSettingPath2(const Object& appObject, WStringView keyPath);
    Variant LoadSetting2(WStringView subKey, WStringView valueName, RegistryType_Const valueType,
                         const Object& appObject, const Variant& fallback, bool userSetting,
                         bool& success);
    bool SaveSetting2(WStringView subKey, WStringView valueName, RegistryType_Const valueType,
                      const Variant& value, const Object& appObject, bool userSetting);

    bool SaveFormPlacement2(const Object& formObject, WStringView subKey, WStringView valueName,
                            const Object& appObject, bool userSetting);
    bool LoadFormPlacement2(const Object& formObject, WStringView subKey, WStringView valueName,
                            const Object& appObject, bool setMinimized, std::int32_t fixedWidth,
                            std::int32_t fixedHeight, bool userSetting);
    bool SaveListViewColumns2(const Object& listViewObject, WStringView subKey,
                              const Object& appObject, bool userSetting);
    bool LoadListViewColumns2(const Object& listViewObject, WStringView subKey,
                              const Object& appObject, bool userSetting);
    Font LoadFont2(WStringView subKey, const Object& appObject, const Font& fallback,
                   bool userSetting);
    bool SaveFont2(WStringView subKey, const Font& value, const Object& appObject,
                   bool userSetting);

private:
    Ref<orvRegistry> registry_;
};

}  // namespace orvane

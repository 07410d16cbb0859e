#include "settings/orvOrvaneSettings.h"

#include "application/AppObject.h"
#include "settings/settings_versions.h"
#include "support/versions.h"

namespace orvane {
namespace {

constexpr const char16_t* kMakersKey = u"Software\\Tarn Hollow\\Orvane\\";

RegistryRoot_Const rootOf(bool userSetting) {
    return userSetting ? RegistryRoot_Const::currentUser : RegistryRoot_Const::localMachine;
}

WString buildSettingPath(WStringView appTitle, WStringView versionText, WStringView keyPath) {
    WString path = kMakersKey + WString(appTitle) + u"\\Version " + versionText;
    if (!keyPath.empty()) path += u"\\" + WString(keyPath);
    return path;
}

/// The text of the newest stored version that is older than the given one, "" without one.
WString findPrevVersion(orvRegistry& registry, RegistryRoot_Const root, WStringView appTitle,
                        std::int32_t verMajor, std::int32_t verMinor) {
    const auto names = registry.GetSubKeysNames(root, kMakersKey + WString(appTitle));
    if (!names) return {};
    return newestVersionBefore(nqFormatVersionShort(verMajor, verMinor), names->items());
}

/// What the members need of an application object, in the order of its reads.
struct Application {
    explicit Application(const Object& object)
        : title(AppObject(object).Title()), major(AppObject(object).Major()),
          minor(AppObject(object).Minor()) {}
    WString title;
    std::int32_t major;
    std::int32_t minor;
};

[[noreturn]] void notCarriedOut() {
    raise(error::kActionNotSupported);
}

}  // namespace

orvOrvaneSettings::orvOrvaneSettings()
    : AutomationObject(table()), registry_(make<orvRegistry>()) {}

WString orvOrvaneSettings::GetSettingPath(WStringView appTitle, std::int32_t verMajor,
                                          std::int32_t verMinor, WStringView keyPath) {
    return buildSettingPath(appTitle, nqFormatVersionShort(verMajor, verMinor), keyPath);
}

Variant orvOrvaneSettings::LoadSetting(WStringView subKey, WStringView valueName,
                                       RegistryType_Const valueType, WStringView appTitle,
                                       std::int32_t verMajor, std::int32_t verMinor,
                                       const Variant& fallback, bool userSetting, bool& success) {
    const RegistryRoot_Const root = rootOf(userSetting);
    const auto read = [&](const WString& path) {
        return registry_->GetValue(root, path, valueName, valueType, success);
    };
    Variant value = read(GetSettingPath(appTitle, verMajor, verMinor, subKey));
    if (success) return value;
    if (verMajor != 0 || verMinor != 0) {
        const WString version = findPrevVersion(*registry_, root, appTitle, verMajor, verMinor);
        if (!version.empty()) {
            value = read(buildSettingPath(appTitle, version, subKey));
            if (success) return value;
        }
    }
    return fallback.isMissing() ? orvRegistry::GetEmptyValue(valueType, success) : fallback;
}

bool orvOrvaneSettings::SaveSetting(WStringView subKey, WStringView valueName,
                                    RegistryType_Const valueType, const Variant& value,
                                    WStringView appTitle, std::int32_t verMajor,
                                    std::int32_t verMinor, bool userSetting) {
    if (value.isMissing()) return false;
    bool keyAlreadyExist = false;
    return registry_->SetValue(rootOf(userSetting),
                               GetSettingPath(appTitle, verMajor, verMinor, subKey), valueName,
                               valueType, value, keyAlreadyExist);
}

WString orvOrvaneSettings::GetSettingPath2(const Object& appObject, WStringView keyPath) {
    const Application application(appObject);
    return GetSettingPath(application.title, application.major, application.minor, keyPath);
}

Variant orvOrvaneSettings::LoadSetting2(WStringView subKey, WStringView valueName,
                                        RegistryType_Const valueType, const Object& appObject,
                                        const Variant& fallback, bool userSetting, bool& success) {
    const Application application(appObject);
    return LoadSetting(subKey, valueName, valueType, application.title, application.major,
                       application.minor, fallback, userSetting, success);
}

bool orvOrvaneSettings::SaveSetting2(WStringView subKey, WStringView valueName,
                                     RegistryType_Const valueType, const Variant& value,
                                     const Object& appObject, bool userSetting) {
    const Application application(appObject);
    return SaveSetting(subKey, valueName, valueType, value, application.title, application.major,
                       application.minor, userSetting);
}

bool orvOrvaneSettings::SaveFormPlacement(const Object&, WStringView, WStringView, WStringView,
                                          std::int32_t, std::int32_t, bool) {
    notCarriedOut();
}

bool orvOrvaneSettings::LoadFormPlacement(const Object&, WStringView, WStringView, WStringView,
                                          std::int32_t, std::int32_t, bool, std::int32_t,
                                          std::int32_t, bool) {
    notCarriedOut();
}

bool orvOrvaneSettings::SaveFormPlacement2(const Object&, WStringView, WStringView, const Object&,
                                           bool) {
    notCarriedOut();
}

bool orvOrvaneSettings::LoadFormPlacement2(const Object&, WStringView, WStringView, const Object&,
                                           bool, std::int32_t, std::int32_t, bool) {
    notCarriedOut();
}

bool orvOrvaneSettings::SaveListViewColumns2(const Object&, WStringView, const Object&, bool) {
    notCarriedOut();
}

bool orvOrvaneSettings::LoadListViewColumns2(const Object&, WStringView, const Object&, bool) {
    notCarriedOut();
}

Font orvOrvaneSettings::LoadFont2(WStringView, const Object&, const Font&, bool) {
    notCarriedOut();
}

bool orvOrvaneSettings::SaveFont2(WStringView, const Font&, const Object&, bool) {
    notCarriedOut();
}

}  // namespace orvane

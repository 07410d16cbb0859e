#include "frame/automation/describe.h"
#include "settings/orvOrvaneSettings.h"

namespace orvane {
namespace {

// A host that names no application shares this title's keys with every other such host.
constexpr const char16_t* kNoTitle = u"Orvane - Byaka";
constexpr const char16_t* kPlacement = u"Window placement";
constexpr const char16_t* kList = u"Unnamed List";
constexpr const char16_t* kFont = u"Unnamed Font";

automation::ClassTable describe() {
    using automation::optional;
    using automation::ParameterName;
    using Settings = orvOrvaneSettings;
    const ParameterName valueName("ValueName", u"");
    const ParameterName valueType("ValueType",
                                  static_cast<std::int32_t>(RegistryType_Const::rtString));
    const ParameterName value("Value", u"");
    const ParameterName appTitle("AppTitle", kNoTitle);
    const ParameterName verMajor = optional("VerMajor");
    const ParameterName verMinor = optional("VerMinor");
    const ParameterName appObject = optional("AppObject");
    const ParameterName fallback = optional("Default");
    const ParameterName userSetting("UserSetting", true);
    const ParameterName success = optional("Success");
    const ParameterName formKey("SubKey", u"");
    const ParameterName placement("ValueName", kPlacement);
    const ParameterName minimized("SetMinimized", false);
    const ParameterName width("FixedWidth", 0);
    const ParameterName height("FixedHeight", 0);
    return automation::ClassBuilder<Settings>(
               "orvOrvaneSettings", automation::Instancing::creatable,
               {0x9729F407, 0x6CC0, 0x41DA, {0x93, 0xE9, 0x18, 0xCE, 0x36, 0x95, 0x1D, 0x14}},
               {0xA46E1FAE, 0x2176, 0x41D4, {0xA7, 0x6D, 0xBC, 0xF5, 0x42, 0xC9, 0xD1, 0x6A}})
        .method<&Settings::GetSettingPath>("GetSettingPath",
                                           {appTitle, verMajor, verMinor, optional("KeyPath")})
        .method<&Settings::LoadSetting>("LoadSetting",
                                        {"SubKey", valueName, valueType, appTitle, verMajor,
                                         verMinor, fallback, userSetting, success})
        .method<&Settings::SaveSetting>("SaveSetting", {"SubKey", valueName, valueType, value,
                                                        appTitle, verMajor, verMinor, userSetting})
        .method<&Settings::SaveFormPlacement>(
            "SaveFormPlacement",
            {"FormObject", formKey, placement, appTitle, verMajor, verMinor, userSetting})
        .method<&Settings::LoadFormPlacement>("LoadFormPlacement",
                                              {"FormObject", formKey, placement, appTitle, verMajor,
                                               verMinor, minimized, width, height, userSetting})
        .method<&Settings::GetSettingPath2>("GetSettingPath2", {appObject, optional("KeyPath")})
        .method<&Settings::LoadSetting2>("LoadSetting2", {"SubKey", valueName, valueType, appObject,
                                                          fallback, userSetting, success})
        .method<&Settings::SaveSetting2>(
            "SaveSetting2", {"SubKey", valueName, valueType, value, appObject, userSetting})
        .method<&Settings::SaveFormPlacement2>(
            "SaveFormPlacement2", {"FormObject", formKey, placement, appObject, userSetting})
        .method<&Settings::LoadFormPlacement2>(
            "LoadFormPlacement2",
            {"FormObject", formKey, placement, appObject, minimized, width, height, userSetting})
        .method<&Settings::SaveListViewColumns2>(
            "SaveListViewColumns2", {"ListViewObject", {"SubKey", kList}, appObject, userSetting})
        .method<&Settings::LoadListViewColumns2>(
            "LoadListViewColumns2", {"ListViewObject", {"SubKey", kList}, appObject, userSetting})
        .method<&Settings::LoadFont2>("LoadFont2",
                                      {{"SubKey", kFont}, appObject, fallback, userSetting})
        .method<&Settings::SaveFont2>(
            "SaveFont2", {{"SubKey", kFont}, optional("Value"), appObject, userSetting})
        .build();
}

}  // namespace

const automation::ClassTable& orvOrvaneSettings::table() {
    static const automation::ClassTable& table = automation::classTable(describe);
    return table;
}

}  // namespace orvane

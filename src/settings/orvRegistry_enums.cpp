#include "settings/orvRegistry.h"

#include "frame/automation/describe.h"

namespace orvane {

namespace {

template <class E>
automation::EnumConstant constant(const char* name, E value) {
    return {name, static_cast<std::int32_t>(value)};
}

}  // namespace

const automation::EnumTable& enumTable(RegistryRoot_Const) {
    using enum RegistryRoot_Const;
    static const automation::EnumTable& table = automation::permanent<automation::EnumTable>([] {
        return automation::EnumTable{
            "RegistryRoot_Const",
            {constant("HKEY_CLASSES_ROOT", classesRoot), constant("HKEY_CURRENT_USER", currentUser),
             constant("HKEY_LOCAL_MACHINE", localMachine), constant("HKEY_USERS", users),
             constant("HKEY_PERFORMANCE_DATA", performanceData),
             constant("HKEY_CURRENT_CONFIG", currentConfig), constant("HKEY_DYN_DATA", dynData)}};
    });
    return table;
}

const automation::EnumTable& enumTable(RegistryType_Const) {
    using enum RegistryType_Const;
    static const automation::EnumTable& table = automation::permanent<automation::EnumTable>([] {
        return automation::EnumTable{"RegistryType_Const",
                                     {constant("rtString", rtString), constant("rtLong", rtLong),
                                      constant("rtBinary", rtBinary),
                                      constant("rtBoolean", rtBoolean)}};
    });
    return table;
}

}  // namespace orvane

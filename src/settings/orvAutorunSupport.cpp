#include "settings/orvAutorunSupport.h"

#include "frame/automation/describe.h"
#include "frame/values/conversions.h"
#include "support/modules.h"
#include "support/text.h"

namespace orvane {
namespace {

constexpr WStringView kRunKey = u"Software\\Microsoft\\Windows\\CurrentVersion\\Run";

}  // namespace

const automation::ClassTable& orvAutorunSupport::table() {
    static const automation::ClassTable& table = automation::classTable([] {
        using automation::optional;
        using Autorun = orvAutorunSupport;
        return automation::ClassBuilder<Autorun>(
                   "orvAutorunSupport", automation::Instancing::global,
                   {0x2C5CEFAF, 0xB68B, 0x4BBC, {0xAA, 0xA2, 0xD2, 0x84, 0xFB, 0x22, 0x34, 0x24}},
                   {0x42FB6CDD, 0xBD1A, 0x47B1, {0xA0, 0xA8, 0x47, 0x6D, 0x1E, 0xBE, 0xC5, 0xAF}})
            .propertyGet<&Autorun::ForCurrentUserOnly>("ForCurrentUserOnly")
            .propertyPut<&Autorun::putForCurrentUserOnly>("ForCurrentUserOnly", {"Value"})
            .method<&Autorun::IsInAutorun>("IsInAutorun", {"AppGUID"})
            .method<&Autorun::GetAutorunString>("GetAutorunString", {"AppGUID"})
            .method<&Autorun::AddToAutorun>("AddToAutorun", {"AppGUID", optional("CommandLine")})
            .method<&Autorun::DeleteFromAutorun>("DeleteFromAutorun", {"AppGUID"})
            .build();
    });
    return table;
}

orvAutorunSupport::orvAutorunSupport() : AutomationObject(table()) {
    putForCurrentUserOnly(true);
}

bool orvAutorunSupport::ForCurrentUserOnly() {
    return root_ == RegistryRoot_Const::currentUser;
}

void orvAutorunSupport::putForCurrentUserOnly(bool value) {
    root_ = value ? RegistryRoot_Const::currentUser : RegistryRoot_Const::localMachine;
}

bool orvAutorunSupport::IsInAutorun(WStringView appGuid) {
    return !nqTrimEx(GetAutorunString(appGuid)).empty();
}

WString orvAutorunSupport::GetAutorunString(WStringView appGuid) {
    if (appGuid.empty()) return {};
    bool success = false;
    return toText(make<orvRegistry>()->GetValue(root_, kRunKey, appGuid,
                                                RegistryType_Const::rtString, success));
}

bool orvAutorunSupport::AddToAutorun(WStringView appGuid, WStringView commandLine) {
    if (appGuid.empty()) return false;
    const WString line =
        commandLine.empty() ? nqGetEXEModulePrettyFileName() : WString(commandLine);
    bool keyAlreadyExist = false;
    return make<orvRegistry>()->SetValue(root_, kRunKey, appGuid, RegistryType_Const::rtString,
                                         line, keyAlreadyExist);
}

bool orvAutorunSupport::DeleteFromAutorun(WStringView appGuid) {
    if (appGuid.empty()) return false;
    return make<orvRegistry>()->DeleteValue(root_, kRunKey, appGuid);
}

}  // namespace orvane

#include "network/ProxySettings.h"

#include "frame/automation/describe.h"
#include "frame/values/conversions.h"
#include "frame/values/text.h"
#include "network/modPasswordCryptor.h"
#include "settings/orvOrvaneSettings.h"

namespace orvane {
namespace {

constexpr const char16_t* kSubKey = u"HTTP Proxy";
constexpr WStringView kLocal = u"<local>";

using enum RegistryType_Const;

// The values below the sub-key, in the order in which they are written and read.
constexpr const char16_t* kAccessType = u"AccessType";
constexpr const char16_t* kAddress = u"Address";
constexpr const char16_t* kBypassList = u"BypassList";
constexpr const char16_t* kBypassLocal = u"BypassLocal";
constexpr const char16_t* kUserName = u"UserName";
constexpr const char16_t* kPassword = u"Password";

automation::ClassTable describe() {
    using automation::optional;
    return automation::ClassBuilder<ProxySettings>(
               "ProxySettings", automation::Instancing::creatable,
               {0xA5F549D8, 0x38A6, 0x4B13, {0x89, 0x19, 0x03, 0x6C, 0xE9, 0x75, 0x84, 0x0D}},
               {0x99C43F50, 0xC88B, 0x479E, {0xBD, 0xA2, 0xF7, 0xA2, 0x63, 0x4F, 0x9B, 0x88}})
        .propertyGet<&ProxySettings::HTTP_Password>("HTTP_Password")
        .propertyPut<&ProxySettings::putHTTP_Password>("HTTP_Password", {"Value"})
        .propertyGet<&ProxySettings::HTTP_UserName>("HTTP_UserName")
        .propertyPut<&ProxySettings::putHTTP_UserName>("HTTP_UserName", {"Value"})
        .propertyGet<&ProxySettings::HTTP_BypassLocal>("HTTP_BypassLocal")
        .propertyPut<&ProxySettings::putHTTP_BypassLocal>("HTTP_BypassLocal", {"Value"})
        .propertyGet<&ProxySettings::HTTP_BypassList>("HTTP_BypassList")
        .propertyPut<&ProxySettings::putHTTP_BypassList>("HTTP_BypassList", {"Value"})
        .propertyGet<&ProxySettings::HTTP_Address>("HTTP_Address")
        .propertyPut<&ProxySettings::putHTTP_Address>("HTTP_Address", {"Value"})
        .propertyGet<&ProxySettings::HTTP_AccessType>("HTTP_AccessType")
        .propertyPut<&ProxySettings::putHTTP_AccessType>("HTTP_AccessType", {"Value"})
        .method<&ProxySettings::HTTP_SaveProxySettings2>(
            "HTTP_SaveProxySettings2",
            {{"SubKey", kSubKey}, optional("AppObject"), {"UserSetting", true}})
        .method<&ProxySettings::HTTP_LoadProxySettings2>(
            "HTTP_LoadProxySettings2",
            {{"SubKey", kSubKey}, optional("AppObject"), {"UserSetting", true}})
        .method<&ProxySettings::HTTP_ShowConfigDialog>("HTTP_ShowConfigDialog")
        .build();
}

}  // namespace

const automation::EnumTable& enumTable(psAccessType) {
    static const automation::EnumTable& table = automation::permanent<automation::EnumTable>([] {
        return automation::EnumTable{
            "psAccessType", {{"psatPreconfigByIE", 0}, {"psatDirect", 1}, {"psatProxy", 3}}};
    });
    return table;
}

const automation::ClassTable& ProxySettings::table() {
    static const automation::ClassTable& table = automation::classTable(describe);
    return table;
}

ProxySettings::ProxySettings() : AutomationObject(table()) {}

void ProxySettings::putHTTP_Password(WStringView value) {
    password_ = WString(value);
}

void ProxySettings::putHTTP_UserName(WStringView value) {
    userName_ = WString(value);
}

void ProxySettings::putHTTP_BypassLocal(bool value) {
    bypassLocal_ = value;
}

void ProxySettings::putHTTP_BypassList(WStringView value) {
    bypassList_ = WString(value);
}

void ProxySettings::putHTTP_Address(WStringView value) {
    address_ = WString(value);
}

void ProxySettings::putHTTP_AccessType(psAccessType value) {
    const bool known = value == psAccessType::psatDirect || value == psAccessType::psatProxy;
    accessType_ = known ? value : psAccessType::psatPreconfigByIE;
}

bool ProxySettings::HTTP_SaveProxySettings2(WStringView subKey, const Object& appObject,
                                            bool userSetting) {
    const auto settings = make<orvOrvaneSettings>();
    const auto save = [&](const char16_t* name, RegistryType_Const type, const Variant& value) {
        settings->SaveSetting2(subKey, name, type, value, appObject, userSetting);
    };
    save(kAccessType, rtLong, static_cast<std::int32_t>(accessType_));
    save(kAddress, rtString, address_);
    save(kBypassList, rtString, bypassList_);
    save(kBypassLocal, rtBoolean, bypassLocal_);
    save(kUserName, rtString, userName_);
    save(kPassword, rtString, EncryptPassword(password_));
    return true;
}

bool ProxySettings::HTTP_LoadProxySettings2(WStringView subKey, const Object& appObject,
                                            bool userSetting) {
    const auto settings = make<orvOrvaneSettings>();
    bool anyFound = false;
    const auto load = [&](const char16_t* name, RegistryType_Const type, const Variant& fallback) {
        bool found = false;
        Variant value =
            settings->LoadSetting2(subKey, name, type, appObject, fallback, userSetting, found);
        anyFound = anyFound || found;
        return value;
    };
    const auto loadText = [&](const char16_t* name) { return toText(load(name, rtString, u"")); };
    putHTTP_AccessType(static_cast<psAccessType>(toLong(load(kAccessType, rtLong, 0))));
    address_ = loadText(kAddress);
    bypassList_ = loadText(kBypassList);
    bypassLocal_ = toBoolean(load(kBypassLocal, rtBoolean, false));
    userName_ = loadText(kUserName);
    password_ = DecryptPassword(loadText(kPassword));
    return anyFound;
}

void ProxySettings::HTTP_ShowConfigDialog() {
    raise(error::kActionNotSupported);
}

WString ProxySettings::GetProxyName() const {
    return address_.empty() ? WString() : address_;
}

WString ProxySettings::GetBypassList() const {
    WString list = u"" + bypassList_;
    if (!bypassLocal_ || lCase(list).view().find(kLocal) != WStringView::npos) return list;
    if (!list.empty()) list += u" ";
    list += kLocal;
    return list;
}

}  // namespace orvane

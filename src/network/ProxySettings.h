#pragma once

#include "frame/automation/automation_object.h"

namespace orvane {

/// How a request finds its way; the values are those of the platform's sessions.
enum class psAccessType : std::int32_t {
    psatPreconfigByIE = 0,
    psatDirect = 1,
    psatProxy = 3,
};
const automation::EnumTable& enumTable(psAccessType);

/// What a host wants for proxies of HTTP, with a load and a save in the settings of its
/// application. The object does nothing on the network.
class ProxySettings final : public automation::AutomationObject {
public:
    static const automation::ClassTable& table();

    ProxySettings();

    /// In clear while in the object.
    const WString& HTTP_Password() const { return password_; }
    void putHTTP_Password(WStringView value);
    const WString& HTTP_UserName() const { return userName_; }
    void putHTTP_UserName(WStringView value);
    /// Also keep the local network off the proxy.
    bool HTTP_BypassLocal() const { return bypassLocal_; }
    void putHTTP_BypassLocal(bool value);
    /// Patterns of hosts that the proxy is not for, separated by blanks.
    const WString& HTTP_BypassList() const { return bypassList_; }
    void putHTTP_BypassList(WStringView value);
    const WString& HTTP_Address() const { return address_; }
    void putHTTP_Address(WStringView value);
    psAccessType HTTP_AccessType() const { return accessType_; }
    /// A value that the enumeration lacks counts as `psatPreconfigByIE`.
    void putHTTP_AccessType(psAccessType value);

    /// Writes the six values below `subKey` in the settings of the application `appObject`, of the
    /// user or of the machine. True whatever came of it. Raises what the application object raises:
    /// 91 when it is left out.
    bool HTTP_SaveProxySettings2(WStringView subKey, const Object& appObject, bool userSetting);
    /// Reads them again; a value that isn't there gets its default. True when one was there.
    bool HTTP_LoadProxySettings2(WStringView subKey, const Object& appObject, bool userSetting);
    /// The dialog for these settings.
    void HTTP_ShowConfigDialog();

    /// For the engine: the proxy's name for a session, null when there is none.
    WString GetProxyName() const;
    /// For the engine: the list for a session, with "<local>" when the local network is to be kept
    /// off and the list doesn't say so in either case of the letters. Empty, but never null.
    WString GetBypassList() const;

private:
    psAccessType accessType_ = psAccessType::psatPreconfigByIE;
    WString address_;
    WString userName_;
    WString password_;
    WString bypassList_;
    bool bypassLocal_ = false;
};

}  // namespace orvane

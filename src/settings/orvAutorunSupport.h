#pragma once

#include "settings/orvRegistry.h"

namespace orvane {

/// Has an application start when a user logs on: by a value under the system's run key, whose name
/// is a text of the application's own (`AppGUID`) and whose content is the command line. Where the
/// system doesn't look into a registry, the registry's writer makes the value come true.
///
/// An empty `AppGUID` gives False or an empty text without a look at the registry. Failures of the
/// registry raise nothing.
class orvAutorunSupport final : public automation::AutomationObject {
public:
    static const automation::ClassTable& table();

    orvAutorunSupport();

    /// Whether the members work for the current user (True, as at the start) or for all users.
    bool ForCurrentUserOnly();
    void putForCurrentUserOnly(bool value);

    /// True when a command line is registered that is more than blanks.
    bool IsInAutorun(WStringView appGuid);
    /// The registered command line, "" when there is none.
    WString GetAutorunString(WStringView appGuid);
    /// Registers a command line; an empty one stands for the name of the running program, without
    /// quotes and arguments.
    bool AddToAutorun(WStringView appGuid, WStringView commandLine);
    bool DeleteFromAutorun(WStringView appGuid);

private:
    RegistryRoot_Const root_{};
};

}  // namespace orvane

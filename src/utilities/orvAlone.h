#pragma once

#include "frame/automation/automation_object.h"
#include "platform/handles.h"

namespace orvane {

/// Tells an application whether another copy of it runs: in the system, on the current desktop or
/// for the current user. A name is taken by the first test of its scope and stays taken until the
/// object ends, so the host keeps the object for as long as it runs.
///
/// Each test begins by closing the mutex of the system scope, whichever scope it is for; only
/// `IsAlone` puts a new one in its place. Hosts see that: after a desktop or user test a later
/// copy's `IsAlone` finds itself alone, while a second test of the same scope on one object finds
/// that object's own earlier mutex.
///
/// `AppGUID` is a text of the application's own. It goes to the platform as it stands, so a
/// backslash in it is the platform's business. A mutex that can't be made counts as the first.
class orvAlone final : public automation::AutomationObject {
public:
    static const automation::ClassTable& table();

    orvAlone();
    ~orvAlone() override;

    /// True when nobody else in the system holds the name.
    bool IsAlone(WStringView appGuid);
    /// True when nobody else holds it on the current desktop: the window system's on Windows, the
    /// session or display on Linux.
    bool IsAloneOnDesktop(WStringView appGuid);
    /// True when nobody else holds it for the current user.
    bool IsAloneAtUser(WStringView appGuid);

private:
    void closeSystemMutex();

    platform::MutexHandle systemMutex_ = platform::MutexHandle::none;
    platform::MutexHandle desktopMutex_ = platform::MutexHandle::none;
    platform::MutexHandle userMutex_ = platform::MutexHandle::none;
};

}  // namespace orvane

#pragma once

#include "frame/automation/automation_object.h"
#include "frame/automation/table.h"

namespace orvane::automation {

/// `IDispatch::GetIDsOfNames` over a class's table: the first name is a member's, those behind it
/// its parameters'. Case counts nowhere. Names that aren't found get DISPID_UNKNOWN.
HRESULT idsOfNames(const ClassTable& table, OLECHAR* const* names, UINT count, DISPID* ids);

/// `IDispatch::Invoke` over a class's table: positional, named, optional, missing and by-reference
/// arguments, property reads that are called as methods, and arguments that are meant for the
/// default member of a parameterless member's result.
HRESULT invoke(AutomationObject& object, DISPID id, WORD flags, const DISPPARAMS& parameters,
               VARIANT* result, EXCEPINFO* exception, UINT* argumentError);

/// The vtable of every class's dual interface begins with these seven entries.
const std::vector<void (*)()>& dispatchSlots();

}  // namespace orvane::automation

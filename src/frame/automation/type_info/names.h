#pragma once

#include "frame/automation/type_info/type_description.h"

/// Names in type information: which member bears which, and which member a name means.
namespace orvane::automation {

/// A member's name and then its parameters' names; of a property write not the value's. Empty when
/// there is no such member. Where several members share an identifier the first counts.
std::vector<const char*> namesOf(const TypeDescription& type, MEMBERID id);

/// The help string of a member, or null.
const char16_t* helpOf(const TypeDescription& type, MEMBERID id);

/// The member or constant of this name, without regard to case; MEMBERID_NIL when there is none.
MEMBERID idOfName(const TypeDescription& type, const OLECHAR* name);

bool sameName(const char* known, const OLECHAR* asked);

/// A name (which is ASCII) as a string of the caller's; null when memory is short.
BSTR bstrOfName(const char* name);

}  // namespace orvane::automation

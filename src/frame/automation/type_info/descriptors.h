#pragma once

#include "frame/automation/type_info/type_description.h"

/// The structures that hosts read type information from, each in a block of its own that the
/// matching `free` takes back.
namespace orvane::automation {

/// The seven functions of IUnknown and IDispatch that a dual interface shows first.
std::size_t inheritedFunctions(const TypeDescription& type);
/// All functions of a type.
std::size_t functionCount(const TypeDescription& type);

TYPEATTR* newTypeAttributes(const TypeDescription& type);
void freeTypeAttributes(TYPEATTR* attributes);

/// `index` must be below `functionCount`.
FUNCDESC* newFunction(const TypeDescription& type, std::size_t index);
void freeFunction(FUNCDESC* function);

/// A constant of an enumeration; `index` must be in it.
VARDESC* newConstant(const EnumTable& table, std::size_t index);
void freeConstant(VARDESC* constant);
MEMBERID constantId(std::size_t index);

/// Name and parameter names of an inherited function, null-terminated; null for another member.
const char* const* inheritedNames(MEMBERID id);

}  // namespace orvane::automation

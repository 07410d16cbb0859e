#pragma once

#include "frame/automation/table.h"

#include <vector>

/// The types of the library's type information, from its class tables.
namespace orvane::automation {

/// One type. Its place in `describedTypes` is the reference (HREFTYPE) by which others name it.
struct TypeDescription {
    TYPEKIND kind;
    const char* name;
    GUID guid{};
    const char16_t* help = nullptr;
    const ClassTable* classTable = nullptr;  ///< classes, their interfaces and aliases of these
    const EventTable* events = nullptr;      ///< event interfaces
    const EnumTable* enumTable = nullptr;

    /// The functions that a type has beside IUnknown's and IDispatch's.
    const std::vector<Member>* members() const;
    bool isDual() const { return kind == TKIND_DISPATCH && classTable != nullptr; }
};

/// All types: those of the library in type-library order, then the few of the system's that they
/// refer to.
const std::vector<TypeDescription>& describedTypes();
/// How many of them are the library's own.
std::size_t ownTypeCount();

/// References to types by what they are.
HREFTYPE referenceTo(const ClassTable& defaultInterface);
HREFTYPE referenceTo(const EnumTable& table);
HREFTYPE referenceTo(const EventTable& events);
HREFTYPE referenceTo(HostInterface interface);
HREFTYPE dispatchReference();

}  // namespace orvane::automation

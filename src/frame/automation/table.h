#pragma once

#include "orvane/automation.h"

#include <cstdint>
#include <string>
#include <vector>

/// What a class tells about itself. From one `ClassTable` come late-bound calls, the dual vtable,
/// the interface definition, the type information and the generated headers.
namespace orvane::automation {

class AutomationObject;
struct ClassTable;
struct EnumTable;

/// One constant of an enumeration.
struct EnumConstant {
    const char* name;
    std::int32_t value;
};

/// An enumeration of the type library.
struct EnumTable {
    const char* name;
    std::vector<EnumConstant> constants;
};

/// The interfaces of the hosts' runtime that members take and give.
enum class HostInterface : std::uint8_t { none, picture, font };

/// A parameter's or result's type as the type library states it.
struct TypeReference {
    VARTYPE type = VT_EMPTY;   ///< VT_EMPTY: no result; VT_ARRAY | element for arrays
    bool byReference = false;  ///< in/out
    /// The class whose default interface this is, for VT_DISPATCH; null for any object.
    const ClassTable& (*classTable)() = nullptr;
    /// The enumeration that a VT_I4 is declared as, or null.
    const EnumTable& (*enumTable)() = nullptr;
    /// The runtime's interface that this is, for VT_DISPATCH.
    HostInterface hostInterface = HostInterface::none;
};

/// What stands for an argument that the caller left out.
struct DefaultValue {
    enum class Kind : std::uint8_t { none, number, text } kind = Kind::none;
    std::int32_t number = 0;  ///< also Booleans, True as -1
    const char16_t* text = nullptr;
};

/// A parameter as a class's description names it: a required one by its name alone, one with a
/// default by name and default, one without default but optional through `optional`.
struct ParameterName {
    ParameterName(const char* parameterName) : name(parameterName) {}
    ParameterName(const char* parameterName, const char16_t* text)
        : name(parameterName), isOptional(true), fallback{DefaultValue::Kind::text, 0, text} {}
    ParameterName(const char* parameterName, std::int32_t number)
        : name(parameterName),
          isOptional(true), fallback{DefaultValue::Kind::number, number, nullptr} {}
    ParameterName(const char* parameterName, bool value)
        : ParameterName(parameterName, static_cast<std::int32_t>(value ? -1 : 0)) {}

    const char* name;
    bool isOptional = false;
    DefaultValue fallback;
};
inline ParameterName optional(const char* name) {
    ParameterName parameter(name);
    parameter.isOptional = true;
    return parameter;
}

struct Parameter {
    const char* name;
    TypeReference type;
    bool isOptional;
    DefaultValue fallback;
};

enum class MemberKind : std::uint8_t { method, propertyGet, propertyPut, propertyPutReference };

/// The caller's arguments by position: null where one was left out. For a variable-argument
/// member, `rest` holds what comes from its last position on.
struct LateArguments {
    VARIANTARG* const* values;
    VARIANTARG* const* rest;
    std::size_t restCount;
};

struct Member;
/// Carries out a late-bound call. `failedArgument` gets the position of an argument that could not
/// be converted while it is being converted, -1 otherwise.
using LateCall = void (*)(AutomationObject& object, const Member& member,
                          const LateArguments& arguments, VARIANT& result, int& failedArgument);

struct Member {
    const char* name;
    DISPID id;
    MemberKind kind;
    std::vector<Parameter> parameters;  ///< without the result
    TypeReference result;
    bool isVariableArgument = false;  ///< the last parameter collects the rest of the call
    const char16_t* help = nullptr;
    LateCall invoke = nullptr;
    void (*slot)() = nullptr;  ///< the vtable entry
};

/// The events that a class fires, a dispatch interface of their own.
struct EventTable {
    const char* name = nullptr;  ///< null: the class has no events
    GUID interfaceId{};
    std::vector<Member> events;
};

/// An earlier identifier of a class's default interface, kept for older hosts.
struct InterfaceAlias {
    const char* name;
    GUID interfaceId;
};

/// How hosts get objects of a class; the values are the type library's flags.
enum class Instancing : std::uint16_t { internal = 0x00, creatable = 0x02, global = 0x0B };

struct ClassTable {
    const char* name;
    Instancing instancing;
    GUID classId;
    GUID interfaceId;
    const char16_t* help = nullptr;
    std::vector<Member> members;  ///< in type-library order, which is the vtable's
    EventTable events;
    std::vector<InterfaceAlias> aliases;
    AutomationObject* (*create)() = nullptr;

    /// The dual vtable: IUnknown's and IDispatch's seven entries, then a slot for each member.
    std::vector<void (*)()> vtable;
    /// Member indices by identifier and kind, and identifiers by name; made by `finish`.
    struct NameEntry {
        std::u16string lowered;
        DISPID id;
    };
    std::vector<NameEntry> names;  ///< sorted by name
    struct IdEntry {
        DISPID id;
        std::int16_t members[4];  ///< by `MemberKind`, -1 for none
    };
    std::vector<IdEntry> ids;  ///< sorted by identifier

    /// The member with this identifier and kind, or null.
    const Member* find(DISPID id, MemberKind kind) const;
    /// The identifier of a member's name, without regard to case; DISPID_UNKNOWN when there is
    /// none.
    DISPID idOf(std::u16string_view asked) const;
    bool isInterface(REFIID iid) const;
};

/// The library as its type library tells it.
struct LibraryTable {
    GUID id;
    const char* name;
    std::uint16_t major;
    std::uint16_t minor;
    const char16_t* help;
    std::vector<const ClassTable*> classes;  ///< in type-library order
    std::vector<const EnumTable*> enums;
    std::uint16_t fileVersion[4];
    const char16_t* versionText;
    const char* progIdPrefix;  ///< "OrvBase0301": ProgIDs are prefix, dot, class
};

/// The library that this code is part of; the module that links the frame defines it.
const LibraryTable& libraryTable();

}  // namespace orvane::automation

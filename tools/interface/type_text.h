#pragma once

#include "frame/automation/table.h"

#include <string>
#include <vector>

/// How the printers spell types, identifiers and values of a class table.
namespace orvane::interface {

/// As `widl` reads it, without an in/out parameter's star: "BSTR", "SAFEARRAY(long)",
/// "_PictureInfo*".
std::string idlType(const automation::TypeReference& type);

/// As a C++ host passes it: "BSTR", "SAFEARRAY*", "_PictureInfo**" for an in/out parameter.
std::string cppType(const automation::TypeReference& type);

/// For people: "String", "Long()", "ByRef PictureInfo"; "" for no result.
std::string plainType(const automation::TypeReference& type);

/// "8F8BBB56-3B84-44E0-9A8B-747DF3813A09".
std::string guidText(const GUID& guid);
/// A C++ initialiser of a `GUID`.
std::string guidInitializer(const GUID& guid);

/// A default as a literal: the number, or the text in quotes with UTF-8 inside.
std::string defaultText(const automation::DefaultValue& value);

/// The text in quotes, with quotes and backslashes escaped, in UTF-8.
std::string quoted(const char16_t* text);

/// "method", "get", "put" or "putref".
const char* kindText(automation::MemberKind kind);

/// The name of a class's default interface.
std::string interfaceName(const automation::ClassTable& table);

}  // namespace orvane::interface

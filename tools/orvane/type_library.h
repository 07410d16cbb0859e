#pragma once

#include "orvane/host.h"

#include <cstdint>
#include <string>
#include <vector>

/// The library's type information as texts, for people.
namespace orvane::tool {

/// A class of the library. Texts are UTF-8; identifiers are in braces.
struct ClassFacts {
    std::string name;
    std::string instancing;  ///< "global", "creatable" or "internal"
    std::string help;
    std::string classId;
    std::string interfaceName;
    std::string interfaceId;
    std::vector<std::string> members;  ///< a line each, in type-library order
};

/// The library and its classes in type-library order; members are filled in for `classWithMembers`
/// (compared without regard to case) only.
struct LibraryFacts {
    std::string name;
    std::string version;
    std::string help;
    std::vector<ClassFacts> classes;
};
LibraryFacts describeLibrary(ITypeLib& library, const std::string& classWithMembers);

/// The library that an object's default interface lies in, with the one class that has it and that
/// class's members.
LibraryFacts describeObject(ITypeInfo& defaultInterface);

/// Whether two names are the same without regard to the case of Latin letters.
bool sameName(const std::string& left, const std::string& right);

}  // namespace orvane::tool

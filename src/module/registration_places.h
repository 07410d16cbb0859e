#pragma once

#include "frame/automation/table.h"
#include "platform/registry.h"

#include <string>
#include <vector>

/// What the two platforms' registrations don't share.
namespace orvane::automation {

/// Where classes are registered: below `root` and `path`, which ends with a backslash or is empty.
struct RegistrationPlace {
    platform::RegistryKey root;
    std::u16string path;
};

/// A text value of a key; the key's own default value when both names are empty.
struct RegistrationValue {
    std::u16string subKey;
    std::u16string name;
    std::u16string text;
};

/// A key that is the library's own, with all below it. `parent` may stay empty behind it and goes
/// then, too.
struct RegistrationTree {
    std::u16string key;
    std::vector<RegistrationValue> values;
    std::u16string parent{};
};

/// The places in the order in which they are tried: the next one when the process may not write to
/// one.
std::vector<RegistrationPlace> registrationPlaces();

/// Adds the keys of the type library and its interfaces that the system has no calls of its own
/// for. `path` is the library's file.
void addTypes(std::vector<RegistrationTree>& trees, const LibraryTable& library,
              const std::u16string& path);

/// Those calls; success where there are none. An unregistered library is unregistered successfully.
bool registerTypeLibrary(const std::u16string& path);
bool unregisterTypeLibrary(const LibraryTable& library);

/// "{E794EBDB-DBCD-4922-8DAA-1AED2FC78244}"
std::u16string guidText(REFGUID guid);
/// "1.5"
std::u16string versionText(const LibraryTable& library);
std::u16string asciiText(const char* text);

}  // namespace orvane::automation

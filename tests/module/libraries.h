#pragma once

#include "orvane/OrvBase0301.h"
#include "orvane/OrvTestComponent.h"
#include "orvane/host.h"

#include <string>

namespace orvane::tests {

/// The path of a file in the folder where the build puts libraries and programs, in the form of
/// the platform.
std::string builtFile(const std::string& name);

/// The library, freshly loaded.
class TheLibrary : public host::Library {
public:
    TheLibrary() : Library(builtFile(kDefaultName)) {}
};

/// The test component, freshly loaded.
class TheComponent : public host::Library {
public:
    TheComponent();
};

/// Whether the file of this name is loaded into the process.
bool isLoaded(const std::string& path);

/// The library's type information, through an object's `ITypeInfo`.
template <class Interface>
host::Pointer<ITypeLib> typeLibraryOf(host::Library& library) {
    const auto object = library.create<Interface>();
    host::Pointer<ITypeInfo> info;
    library.check(object->GetTypeInfo(0, LOCALE_USER_DEFAULT, info.receive()));
    host::Pointer<ITypeLib> types;
    UINT index = 0;
    library.check(info->GetContainingTypeLib(types.receive(), &index));
    return types;
}

}  // namespace orvane::tests

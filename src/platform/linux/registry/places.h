#pragma once

#include <string>

namespace orvane::store {

/// Where a root is kept.
struct Place {
    std::string folder;  ///< absolute, without a separator at its end; empty when there is none
    bool isOwn;          ///< the user's alone: nobody else may read it

    std::string file() const { return folder + "/registry.db"; }
};

/// The user's: `$ORVANE_REGISTRY_USER`, else "orvane" in `$XDG_CONFIG_HOME`, else in ".config" of
/// the home folder, which is `$HOME` or what the user database says.
Place userPlace();
/// The machine's: `$ORVANE_REGISTRY_MACHINE`, else "/var/lib/orvane".
Place machinePlace();

/// Makes the folder with all that lack on the way to it. 0, or the number of the error.
int makeFolders(const Place& place);
/// Makes an empty file in the folder unless there is one. 0, or the number of the error.
int makeFile(const Place& place);
/// True when the user could do that, or write to the file that is there.
bool isWritable(const Place& place);

}  // namespace orvane::store

#pragma once

#include "platform/linux/autostart/entry.h"
#include "platform/operation.h"

#include <optional>
#include <string>
#include <vector>

namespace orvane::platform::autostart {

/// The folder of a scope's entries: "autostart" below the user's configuration folder, or
/// "/etc/xdg/autostart"; where the environment moves that root of the registry, "autostart" in the
/// folder that it names. Empty when the user has no home.
std::string entryFolder(Scope scope);

/// True when a path names a file that this process may execute.
bool isProgram(const std::string& path);

/// One entry as it shall be.
struct Change {
    Scope scope;
    std::u16string foldedName;
    std::string text;  ///< "": no entry
};

/// Changes of entries that are made together or not at all.
class Changes {
public:
    explicit Changes(std::vector<Change> changes) : changes_(std::move(changes)) {}

    /// Makes all of them. When one can't be made, those before it are undone, and the result is
    /// that one's error.
    ResultCode apply();
    /// Puts every entry back as it was before `apply`.
    void undo();

private:
    struct Former {
        std::string path;
        std::optional<std::string> text;
    };

    std::vector<Change> changes_;
    std::vector<Former> former_;
};

}  // namespace orvane::platform::autostart

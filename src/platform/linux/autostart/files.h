#pragma once

#include "platform/linux/autostart/entry.h"
#include "platform/operation.h"

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
///
/// Entries that go or are replaced stay beside their places, under names that desktops don't look
/// at, until it is sure that the changes last: to put them back takes no room. Whoever makes
/// changes holds the root of the registry that the entries belong to.
class Changes {
public:
    explicit Changes(std::vector<Change> changes) : changes_(std::move(changes)) {}

    /// Makes all of them; of several for one entry the last. When one can't be made, those before
    /// it are undone, and the result is that one's error.
    ResultCode apply();
    /// Puts every entry back as it was before `apply`, but for those that are settled.
    void undo();
    /// Lets go what `undo` would need for the entries of a scope.
    void settle(Scope scope);

private:
    struct Step {
        Scope scope;
        std::string path;
        bool hadEntry;
    };
    ResultCode make(const Change& change);

    std::vector<Change> changes_;
    std::vector<Step> steps_;
};

/// The entries, by their file names, that a process was changing when it was killed: their former
/// ones are still beside them. Files that it was writing are taken away.
std::vector<std::string> interruptedEntries(Scope scope);
/// Ends such a change of an entry: `text` is the text of the entry of the value that is stored now,
/// "" when there is none. The entry becomes what goes with that value.
void settleInterrupted(Scope scope, const std::string& entryName, const std::string& text);

}  // namespace orvane::platform::autostart

#include "commands.h"
#include "json.h"
#include "library.h"
#include "system.h"

namespace orvane::tool {

// Each text is in quotes with the escapes of JSON, so that nothing in it can be taken for
// something else.
int runArgs() {
    Library library;
    const std::vector<std::string> items = library.commandLine();
    std::string lines = "count  " + std::to_string(items.size() - 1) + "\n";
    int index = -1;
    for (const std::string& item : items) {
        lines += std::to_string(index++) + "  " + jsonString(item) + "\n";
    }
    writeToOutput(lines);
    return kSuccess;
}

}  // namespace orvane::tool

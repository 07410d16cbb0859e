#include "options.h"

namespace orvane::tool {

bool takeOptions(Words& words, std::string_view known) {
    bool found = false;
    while (!words.empty() && words.front().starts_with("-") && words.front() != "-") {
        const std::string& option = words.front();
        words = words.subspan(1);
        if (option == "--") break;
        if (option != known) throw UsageError("unknown option " + option);
        found = true;
    }
    return found;
}

}  // namespace orvane::tool

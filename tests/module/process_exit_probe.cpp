// Ends in the way that its argument names while objects of the library are alive. The status is 0
// when the end itself went well.

#include "libraries.h"

#include <cstdlib>
#include <cstring>

namespace {

orvane::host::Pointer<_orvMain> keptObject;
orvane::host::Pointer<_CommandLineParser> keptParser;

void keepObjects(orvane::host::Library& library) {
    keptObject = library.create<_orvMain>();
    library.check(keptObject->CommandLine(keptParser.receive()));
}

}  // namespace

int main(int count, char** arguments) {
    // Never unloaded: the process ends first.
    static auto* library = new orvane::tests::TheLibrary;
    keepObjects(*library);
    const char* const way = count > 1 ? arguments[1] : "";
    if (std::strcmp(way, "return") == 0) return 0;
    if (std::strcmp(way, "exit") == 0) std::exit(0);
    if (std::strcmp(way, "unload") == 0) {
        // The host breaks the rules: it unloads what is in use, and only then ends.
        keptObject.place()[0] = nullptr;
        keptParser.place()[0] = nullptr;
        delete library;
        return 0;
    }
    return 1;
}

// A host that loads the library by a name relative to its folder, goes to another folder and makes
// a gzip reader there:
//
//   gzip_moving_host LIBRARY FOLDER
//
// Prints 1 when zlib is available to an object that is made there, and 0 when not.

#include "orvane/OrvBase0301.h"
#include "orvane/host.h"

#include <exception>
#include <iostream>
#include <unistd.h>

namespace {

bool isAvailable(orvane::host::Library& library) {
    VARIANT_BOOL available = VARIANT_FALSE;
    library.check(library.create<_orvGZipArchive>()->IsLibraryAvailable(&available));
    return available == VARIANT_TRUE;
}

}  // namespace

int main(int count, char** arguments) {
    if (count < 3) return 2;
    try {
        orvane::host::Library library(arguments[1]);
        if (::chdir(arguments[2]) != 0) return 2;
        std::cout << isAvailable(library) << "\n";
    } catch (const std::exception& failure) {
        std::cerr << failure.what() << "\n";
        return 1;
    }
    return 0;
}

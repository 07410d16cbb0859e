// From nothing to an object and back: load the library, create and release orvMain, unload.

#include "bench.h"

#include <orvane/OrvBase0301.h>
#include <orvane/host.h>

#include <dlfcn.h>

#include <cstdlib>
#include <fstream>

namespace {

std::string path;

void loadAndCreate() {
    orvane::host::Library library(path);
    library.create<_orvMain>();
}

void loadPeer() {
    void* peer = dlopen("libjpeg.so.62", RTLD_NOW | RTLD_LOCAL);
    if (peer == nullptr) std::exit(1);
    dlclose(peer);
}

void printForeignLibraries() {
    std::ifstream maps("/proc/self/maps");
    const char* const forbidden[] = {"libjpeg", "libgif", "libpng",        "libtiff",
                                     "libX11",  "libQt",  "OrvanePictures"};
    std::string line;
    int found = 0;
    while (std::getline(maps, line)) {
        for (const char* name : forbidden)
            found += line.find(name) != std::string::npos ? 1 : 0;
    }
    std::printf("imaging and window libraries in memory with orvMain alive: %d\n", found);
}

}  // namespace

int main(int, char** arguments) {
    path = orvane::bench::builtFile(arguments[0], "libOrvaneBase0301.so");
    {
        orvane::host::Library library(path);
        const auto object = library.create<_orvMain>();
        printForeignLibraries();
    }
    const double first = orvane::bench::medianTime(loadAndCreate, 1);
    std::printf("load, create and release orvMain, first time: %s\n",
                orvane::bench::readable(first).c_str());
    const auto [own, peer] = orvane::bench::medianTimes(loadAndCreate, loadPeer, 30);
    orvane::bench::printRatio("load, create and release orvMain", own, "dlopen of libjpeg", peer);
    return 0;
}

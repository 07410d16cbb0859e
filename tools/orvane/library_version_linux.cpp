#include "library_version.h"

#include "utf8.h"

#include "orvane/OrvBase0301.h"

namespace orvane::tool {

std::string libraryVersion(host::Library& library) {
    USHORT parts[4] = {};
    host::Text text;
    library.check(library.runtime(CLSID_orvMain)->GetVersion(parts, text.receive()));
    return toUtf8(text.view());
}

}  // namespace orvane::tool

#include "platform/linux/metafiles/play.h"

#include <new>

namespace orvane::metafiles {

namespace {

int playBytes(const uint8_t* bytes, size_t size, const OrvaneCanvas* canvas,
              const OrvaneMetafileArea* area) {
    try {
        return play({bytes, size}, *canvas, *area);
    } catch (const std::bad_alloc&) {
        return ORVANE_CODEC_OUT_OF_MEMORY;
    }
}

constexpr OrvaneMetafileTable kTable{ORVANE_METAFILE_VERSION, playBytes};

}  // namespace

}  // namespace orvane::metafiles

extern "C" __attribute__((visibility("default"))) const OrvaneMetafileTable*
orvaneMetafileTable(void) {
    return &orvane::metafiles::kTable;
}

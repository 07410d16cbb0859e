#include "platform/linux/codecs/codecs.h"
#include "platform/linux/codecs/decoders.h"
#include "platform/linux/codecs/images.h"

#include <new>

namespace orvane::codecs {

namespace {

constexpr auto kDecoders = {decodeBmp, decodeJpeg, decodeGif, decodeIcon, decodeMetafile};

OrvaneCodecResult tryDecoders(std::span<const uint8_t> file, OrvaneDecoded& out,
                              const Limits& limits) {
    for (const auto decode : kDecoders) {
        const OrvaneCodecResult result = decode(file, out, limits);
        if (result != ORVANE_CODEC_NOT_RECOGNISED) return result;
    }
    return ORVANE_CODEC_NOT_RECOGNISED;
}

int recognises(const uint8_t* start, size_t size) {
    return isAny({start, size}) ? 1 : 0;
}

int decodeBytes(const uint8_t* bytes, size_t size, OrvaneDecoded* out) {
    return decodeAny({bytes, size}, *out, Limits{});
}

void releaseDecoded(OrvaneDecoded* decoded) {
    release(*decoded);
}

int recognisesImage(const uint8_t* start, size_t size) {
    return isAnyImage({start, size}) ? 1 : 0;
}

int examineBytes(const uint8_t* bytes, size_t size, OrvaneImageFacts* facts) {
    OrvaneImageFacts found{};
    const OrvaneCodecResult result = examineAny({bytes, size}, found, Limits{});
    if (result == ORVANE_CODEC_OK) *facts = found;
    return result;
}

int paintBytes(const uint8_t* bytes, size_t size, const OrvaneCanvas* canvas) {
    return paintAny({bytes, size}, *canvas, Limits{});
}

constexpr OrvaneCodecTable kTable{
    ORVANE_CODEC_VERSION, sizeof(OrvaneDecoded), recognises,   decodeBytes,
    releaseDecoded,       recognisesImage,       examineBytes, paintBytes};

}  // namespace

bool isAny(std::span<const uint8_t> start) {
    return isBmp(start) || isJpeg(start) || isGif(start) || isIcon(start) || isMetafile(start);
}

OrvaneCodecResult decodeAny(std::span<const uint8_t> file, OrvaneDecoded& out,
                            const Limits& limits) {
    clear(out);
    OrvaneCodecResult result = ORVANE_CODEC_OUT_OF_MEMORY;
    try {
        result = tryDecoders(file, out, limits);
    } catch (const std::bad_alloc&) {
        result = ORVANE_CODEC_OUT_OF_MEMORY;
    }
    if (result != ORVANE_CODEC_OK) release(out);
    return result;
}

}  // namespace orvane::codecs

extern "C" __attribute__((visibility("default"))) const OrvaneCodecTable* orvaneCodecTable(void) {
    return &orvane::codecs::kTable;
}

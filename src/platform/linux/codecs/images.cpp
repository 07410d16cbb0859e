#include "platform/linux/codecs/images.h"

#include "platform/linux/codecs/decoders.h"

#include <new>

namespace orvane::codecs {

namespace {

constexpr auto kExaminers = {examinePng, examineTiff, examineDecoded};
constexpr auto kPainters = {paintPng, paintTiff, paintDecoded};

/// The first answer that isn't "another format".
template <class Readers, class Out>
OrvaneCodecResult firstAnswer(const Readers& readers, std::span<const uint8_t> file, Out& out,
                              const Limits& limits) {
    try {
        for (const auto read : readers) {
            const OrvaneCodecResult result = read(file, out, limits);
            if (result != ORVANE_CODEC_NOT_RECOGNISED) return result;
        }
    } catch (const std::bad_alloc&) {
        return ORVANE_CODEC_OUT_OF_MEMORY;
    }
    return ORVANE_CODEC_NOT_RECOGNISED;
}

}  // namespace

bool isAnyImage(std::span<const uint8_t> start) {
    return isPng(start) || isTiff(start) || isBmp(start) || isJpeg(start) || isGif(start) ||
           isIcon(start);
}

OrvaneCodecResult examineAny(std::span<const uint8_t> file, OrvaneImageFacts& facts,
                             const Limits& limits) {
    return firstAnswer(kExaminers, file, facts, limits);
}

OrvaneCodecResult paintAny(std::span<const uint8_t> file, const OrvaneCanvas& canvas,
                           const Limits& limits) {
    return firstAnswer(kPainters, file, canvas, limits);
}

}  // namespace orvane::codecs

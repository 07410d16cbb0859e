#pragma once

#include "codec_target.h"
#include "platform/linux/codecs/images.h"

#include <vector>

namespace orvane::codecs::fuzz {

/// Examines one input and paints it, when it is small enough for a canvas.
inline void
runImage(OrvaneCodecResult (*examine)(std::span<const uint8_t>, OrvaneImageFacts&, const Limits&),
         OrvaneCodecResult (*paint)(std::span<const uint8_t>, const OrvaneCanvas&, const Limits&),
         const uint8_t* data, size_t size) {
    try {
        OrvaneImageFacts facts{};
        if (examine({data, size}, facts, kLimits) != ORVANE_CODEC_OK) return;
        require(facts.width > 0 && facts.height > 0 && facts.pixelFormat != 0);
        const uint64_t bytes = uint64_t{facts.width} * 4 * facts.height;
        if (bytes > kLimits.surfaceBytes) return;
        std::vector<uint8_t> pixels(bytes);
        const OrvaneCanvas canvas{facts.width, facts.height, pixels.data(),
                                  static_cast<ptrdiff_t>(facts.width) * 4};
        paint({data, size}, canvas, kLimits);
    } catch (const std::bad_alloc&) {
        // Part of what a reader may answer.
    }
}

}  // namespace orvane::codecs::fuzz

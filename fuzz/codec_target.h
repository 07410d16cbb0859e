#pragma once

#include "platform/linux/codecs/decoders.h"
#include "target.h"

#include <cstddef>
#include <cstdint>
#include <new>
#include <span>

namespace orvane::codecs::fuzz {

/// Small enough for thousands of runs a second; decoders see the limits as they see the real ones.
constexpr Limits kLimits{uint64_t{1} << 22, uint64_t{1} << 24};

inline uint64_t sumOf(const uint8_t* bytes, size_t count) {
    uint64_t sum = 0;
    for (size_t i = 0; i < count; ++i)
        sum += bytes[i];
    return sum;
}

/// Reads all memory of a picture and checks what every picture promises.
inline void inspect(const OrvaneDecoded& picture) {
    require(picture.width > 0 && picture.height > 0);
    const auto height = static_cast<uint64_t>(picture.height);
    require(picture.stride % 4 == 0 && picture.pixelBytes == picture.stride * height);
    require(picture.maskStride % 4 == 0 && picture.maskBytes == picture.maskStride * height);
    require(picture.paletteCount <= 256);
    require(picture.transparentIndex < static_cast<int32_t>(picture.paletteCount));
    // A sum of bytes can't come near the top; the compiler has to read them all the same.
    const uint64_t sum = sumOf(picture.pixels, picture.pixelBytes) +
                         sumOf(picture.mask, picture.maskBytes) +
                         sumOf(picture.file, picture.fileBytes);
    require(sum < UINT64_MAX / 2);
}

/// Runs one decoder over one input.
inline void run(OrvaneCodecResult (*decode)(std::span<const uint8_t>, OrvaneDecoded&,
                                            const Limits&),
                const uint8_t* data, size_t size) {
    OrvaneDecoded picture{};
    try {
        if (decode({data, size}, picture, kLimits) == ORVANE_CODEC_OK) inspect(picture);
    } catch (const std::bad_alloc&) {
        // Part of what a decoder may answer.
    }
    release(picture);
}

}  // namespace orvane::codecs::fuzz

#pragma once

#include "platform/linux/codecs/codecs.h"
#include "platform/linux/codecs/surface.h"

#include <cstdint>
#include <span>

// The readers behind GDI+. Each has two steps over a whole file: `examine...` tells what the image
// is, `paint...` paints it over a canvas of its size. Both give NOT_RECOGNISED for another format's
// file; the canvas may be half painted after any other failure.

namespace orvane::codecs {

/// GDI+'s numbers of pixel formats (gdipluspixelformats.h): bits 8 to 15 are the bits per pixel.
namespace pixel_format {
inline constexpr uint32_t k1bppIndexed = 0x30101;
inline constexpr uint32_t k4bppIndexed = 0x30402;
inline constexpr uint32_t k8bppIndexed = 0x30803;
inline constexpr uint32_t k16bppRgb555 = 0x21005;
inline constexpr uint32_t k16bppRgb565 = 0x21006;
inline constexpr uint32_t k24bppRgb = 0x21808;
inline constexpr uint32_t k32bppRgb = 0x22009;
inline constexpr uint32_t k32bppArgb = 0x26200A;
inline constexpr uint32_t k32bppPArgb = 0xE200B;
inline constexpr uint32_t k48bppRgb = 0x10300C;
inline constexpr uint32_t k64bppArgb = 0x34400D;
inline constexpr uint32_t k64bppPArgb = 0x1C4000E;
}  // namespace pixel_format

bool isPng(std::span<const uint8_t> start);
bool isTiff(std::span<const uint8_t> start);

/// PNG of every colour type and depth; see png.cpp.
OrvaneCodecResult examinePng(std::span<const uint8_t> file, OrvaneImageFacts& facts,
                             const Limits& limits);
OrvaneCodecResult paintPng(std::span<const uint8_t> file, const OrvaneCanvas& canvas,
                           const Limits& limits);
/// Stores the image over the canvas, alpha in the fourth byte of a pixel (255 without any), not
/// multiplied into the colours: an image of an icon.
OrvaneCodecResult unpackPng(std::span<const uint8_t> file, const OrvaneCanvas& canvas,
                            const Limits& limits);

/// TIFF: the first page; see tiff.cpp.
OrvaneCodecResult examineTiff(std::span<const uint8_t> file, OrvaneImageFacts& facts,
                              const Limits& limits);
OrvaneCodecResult paintTiff(std::span<const uint8_t> file, const OrvaneCanvas& canvas,
                            const Limits& limits);

/// What the host's loader reads, but for cursors and metafiles.
OrvaneCodecResult examineDecoded(std::span<const uint8_t> file, OrvaneImageFacts& facts,
                                 const Limits& limits);
OrvaneCodecResult paintDecoded(std::span<const uint8_t> file, const OrvaneCanvas& canvas,
                               const Limits& limits);

/// Whether any of the above may know a file that starts so.
bool isAnyImage(std::span<const uint8_t> start);

/// Whichever of the above knows the file. OUT_OF_MEMORY for bad_alloc, too.
OrvaneCodecResult examineAny(std::span<const uint8_t> file, OrvaneImageFacts& facts,
                             const Limits& limits);
OrvaneCodecResult paintAny(std::span<const uint8_t> file, const OrvaneCanvas& canvas,
                           const Limits& limits);

}  // namespace orvane::codecs

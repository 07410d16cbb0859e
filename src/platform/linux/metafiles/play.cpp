#include "platform/linux/metafiles/play.h"

#include "platform/linux/metafiles/emf_player.h"
#include "platform/linux/metafiles/wmf_player.h"

#include <cstdlib>

namespace orvane::metafiles {

namespace {

using codecs::Reader;

constexpr std::uint32_t kPlaceableKey = 0x9AC6CDD7;
constexpr std::uint64_t kPlaceableBytes = 22;
constexpr std::uint64_t kHeaderBytes = 18;
constexpr std::uint32_t kEmfHeader = 1;
constexpr std::uint32_t kEmfSignature = 0x464D4520;  // " EMF"
constexpr std::uint64_t kFewestEmfBytes = 88;
constexpr double kHimetricPerInch = 2540;

/// A Windows metafile that sets no window has hundredths of a millimetre as its units, as where
/// the platform's picture plays it.
Mapping wmfMapping(const Reader& file, const OrvaneMetafileArea& area) {
    const double perInch = file.u16(14);
    const auto himetric = [&](std::uint64_t from, std::uint64_t to) {
        return std::abs(file.i16(to) - file.i16(from)) * kHimetricPerInch / perInch;
    };
    Mapping mapping;
    mapping.setMode(static_cast<std::int32_t>(MapMode::anisotropic));
    mapping.setWindowExtent({himetric(6, 10), himetric(8, 12)});
    mapping.setViewportOrigin({double(area.x), double(area.y)});
    mapping.setViewportExtent({double(area.width), double(area.height)});
    return mapping;
}

/// The drawing library sets the fourth bytes, which mean nothing here.
void clearFourthBytes(const OrvaneCanvas& canvas) {
    for (std::uint32_t y = 0; y < canvas.height; ++y) {
        auto* const row = canvas.pixels + static_cast<std::ptrdiff_t>(y) * canvas.stride;
        for (std::size_t x = 0; x < canvas.width; ++x)
            row[x * 4 + 3] = 0;
    }
}

bool isEmf(const Reader& file) {
    const Box frame{double(file.i32(24)), double(file.i32(28)), double(file.i32(32)),
                    double(file.i32(36))};
    return file.u32(0) == kEmfHeader && file.u32(40) == kEmfSignature &&
           file.holds(0, kFewestEmfBytes) && frame.width() > 0 && frame.height() > 0;
}

}  // namespace

OrvaneCodecResult play(std::span<const uint8_t> bytes, const OrvaneCanvas& canvas,
                       const OrvaneMetafileArea& area) {
    const Reader file(bytes);
    const bool isWmf = file.u32(0) == kPlaceableKey && file.u16(14) != 0;
    if (!isWmf && !isEmf(file)) return ORVANE_CODEC_NOT_RECOGNISED;
    if (area.width == 0 || area.height == 0) return ORVANE_CODEC_OK;
    Painter painter(canvas, area, isWmf ? wmfMapping(file, area) : emfMapping(file, area));
    if (isWmf) WmfPlayer(painter).play(file.part(kPlaceableBytes + kHeaderBytes));
    else EmfPlayer(painter).play(file);
    clearFourthBytes(canvas);
    return ORVANE_CODEC_OK;
}

}  // namespace orvane::metafiles

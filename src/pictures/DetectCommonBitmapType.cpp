#include "pictures/DetectCommonBitmapType.h"

#include "frame/binary_file.h"
#include "frame/values/codepage.h"
#include "frame/values/text.h"
#include "platform/gdi32.h"

#include <array>

namespace orvane {

orvPictureTypeEx DetectCommonBitmapType(const Picture& picture, WStringView fileName,
                                        DecodedImage& image) {
    platform::BitmapFacts facts;
    platform::gdi32.GetObjectA(static_cast<platform::BitmapHandle>(picture.handle()), facts);
    image.Width = facts.width;
    image.Height = facts.height;
    image.BitsPerPixel = facts.bitsPixel;

    constexpr std::int16_t kBitmapSignature = 19778;  // "BM"
    std::int16_t signature = 0;
    std::array<std::uint8_t, 3> letters{};
    ErrorTrap trap;
    BinaryFile file;
    trap([&] { file.open(fileName, FileMode::read); });
    trap([&] { signature = file.get<std::int16_t>(); });
    if (signature == kBitmapSignature) return orvPictureTypeEx::orvPteBMP;
    trap([&] { file.seek(1); });
    trap([&] { file.get(letters); });
    const std::string_view text(reinterpret_cast<const char*>(letters.data()), letters.size());
    return uCase(fromAnsi(text)) == u"GIF" ? orvPictureTypeEx::orvPteGIF
                                           : orvPictureTypeEx::orvPteJPG;
}

}  // namespace orvane

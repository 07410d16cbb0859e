#include "pictures/modBitmapWorks.h"

#include "frame/arithmetic.h"
#include "frame/values/conversions.h"
#include "pictures/CBackBitmap.h"
#include "pictures/CCompatibleDC.h"
#include "platform/gdi32.h"

#include <cmath>

namespace orvane {

Picture CreatePictureFromImage(const DecodedImage& image) {
    platform::BitmapInfo info;
    info.biWidth = image.Width;
    info.biHeight = checkedNegate(image.Height);
    info.biBitCount = static_cast<std::uint16_t>(image.BitsPerPixel);
    if (image.BitsPerPixel == 8 && image.Palette) info.bmiColors = *image.Palette;

    // The section is always 24 bits deep, for 8-bit images too: so the bitmap that is compatible
    // with it is a 24-bit one on every screen.
    CBackBitmap back;
    back.Initialize(24, nullptr);
    std::unique_ptr<CCompatibleBitmap> bitmap;
    {
        CCompatibleDC dc;
        dc.SelectBitmap(back.hBitmap());
        bitmap = dc.CreateCompatibleBitmap(image.Width, image.Height);
        dc.SelectBitmap(bitmap->hBitmap());
        platform::gdi32.StretchDIBits(dc.hDC(), 0, 0, image.Width, image.Height, 0, 0, image.Width,
                                      image.Height, image.Pixels.elements(), info,
                                      platform::kDibRgbColors, platform::kSrcCopy);
    }
    return bitmap->GetStdPicture();
}

std::int32_t GetRowStride(std::int32_t width, std::int32_t bitsPerPixel) {
    if (bitsPerPixel == 8) return checkedAdd(width, 3) & ~3;
    if (bitsPerPixel == 24) return checkedAdd(checkedMultiply(width, 3), 3) & ~3;
    return 0;
}

std::int32_t ShiftLeft(std::int32_t value, std::int32_t count) {
    return doubleToLong(value * std::exp2(count));
}

std::int32_t ShiftRight(std::int32_t value, std::int32_t count) {
    const std::int32_t divisor = doubleToLong(std::exp2(count));
    if (divisor == 0) raise(error::kDivisionByZero);
    return value / divisor;
}

std::int16_t ReadWord(BinaryFile& file, bool littleEndian) {
    const std::int32_t first = file.get<std::uint8_t>();
    const std::int32_t second = file.get<std::uint8_t>();
    return toInteger16(littleEndian ? second * 256 + first : first * 256 + second);
}

}  // namespace orvane

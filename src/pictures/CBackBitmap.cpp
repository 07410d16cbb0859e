#include "pictures/CBackBitmap.h"

#include "platform/gdi32.h"

#include <algorithm>

namespace orvane {

void CBackBitmap::Initialize(std::uint16_t bits, const std::uint32_t* palette) {
    platform::BitmapInfo info;
    info.biWidth = 1;
    info.biHeight = -1;
    info.biBitCount = bits;
    if (palette != nullptr) std::copy_n(palette, info.bmiColors.size(), info.bmiColors.begin());
    void* pixels = nullptr;
    SetHandle(platform::gdi32.CreateDIBSection(platform::DeviceContext::none, info,
                                               platform::kDibRgbColors, pixels));
}

}  // namespace orvane

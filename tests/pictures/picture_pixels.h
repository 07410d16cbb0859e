#pragma once

#include "frame/values/picture.h"
#include "platform/gdi32.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <vector>

namespace orvane::test {

inline platform::BitmapHandle bitmapOf(const Picture& picture) {
    return static_cast<platform::BitmapHandle>(picture.handle());
}

/// Size and depth of a bitmap; all 0 when the handle is none.
inline platform::BitmapFacts factsOf(platform::BitmapHandle bitmap) {
    platform::BitmapFacts facts;
    platform::gdi32.GetObjectA(bitmap, facts);
    return facts;
}
inline platform::BitmapFacts factsOf(const Picture& picture) {
    return factsOf(bitmapOf(picture));
}

/// A bitmap's pixels as 24 bits, blue, green, red, rows from the top and padded to 4 bytes.
inline std::vector<std::uint8_t> pixelsOf(platform::BitmapHandle bitmap) {
    using namespace platform;
    const BitmapFacts facts = factsOf(bitmap);
    BitmapInfo info;
    info.biWidth = facts.width;
    info.biHeight = -facts.height;
    info.biBitCount = 24;
    void* bits = nullptr;
    const BitmapHandle section =
        gdi32.CreateDIBSection(DeviceContext::none, info, kDibRgbColors, bits);
    const DeviceContext from = gdi32.CreateCompatibleDC(DeviceContext::none);
    const DeviceContext to = gdi32.CreateCompatibleDC(DeviceContext::none);
    const GdiObject formerFrom = gdi32.SelectObject(from, bitmap);
    const GdiObject formerTo = gdi32.SelectObject(to, section);
    EXPECT_NE(formerFrom, BitmapHandle::none) << "the bitmap can't be selected";
    EXPECT_TRUE(gdi32.BitBlt(to, 0, 0, facts.width, facts.height, from, 0, 0, kSrcCopy));
    const auto size = static_cast<std::size_t>((facts.width * 3 + 3) / 4 * 4 * facts.height);
    const auto* first = static_cast<const std::uint8_t*>(bits);
    std::vector<std::uint8_t> pixels(first, first + size);
    gdi32.SelectObject(from, formerFrom);
    gdi32.SelectObject(to, formerTo);
    gdi32.DeleteDC(from);
    gdi32.DeleteDC(to);
    gdi32.DeleteObject(section);
    return pixels;
}
inline std::vector<std::uint8_t> pixelsOf(const Picture& picture) {
    return pixelsOf(bitmapOf(picture));
}

}  // namespace orvane::test

#pragma once

#include "platform/gdi32.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>
#include <vector>

namespace orvane::platform {

using Bytes = std::vector<std::uint8_t>;

inline BitmapInfo infoOf(std::int32_t width, std::int32_t height, std::uint16_t bits) {
    BitmapInfo info;
    info.biWidth = width;
    info.biHeight = height;
    info.biBitCount = bits;
    return info;
}

/// A device context with a section selected in it.
class Canvas {
public:
    explicit Canvas(const BitmapInfo& info) : info_(info) {
        dc = gdi32.CreateCompatibleDC(DeviceContext::none);
        bitmap = gdi32.CreateDIBSection(DeviceContext::none, info, kDibRgbColors, bits);
        former = gdi32.SelectObject(dc, bitmap);
    }
    Canvas(const Canvas&) = delete;
    Canvas& operator=(const Canvas&) = delete;
    ~Canvas() {
        EXPECT_EQ(gdi32.SelectObject(dc, former), GdiObject(bitmap));
        EXPECT_TRUE(gdi32.DeleteObject(bitmap));
        EXPECT_TRUE(gdi32.DeleteDC(dc));
    }

    /// The stored bytes of all rows.
    Bytes stored() const {
        Bytes out(size());
        std::memcpy(out.data(), bits, out.size());
        return out;
    }
    std::size_t size() const {
        const auto stride =
            static_cast<std::size_t>((info_.biWidth * info_.biBitCount + 31) / 32 * 4);
        return stride * static_cast<std::size_t>(std::abs(info_.biHeight));
    }
    /// Sets every stored byte.
    void clear(std::uint8_t value) const { std::memset(bits, value, size()); }
    /// The stored pixels of a section of 32 bits, the first row's first.
    std::uint32_t* pixels() const { return static_cast<std::uint32_t*>(bits); }

    std::int32_t draw(const BitmapInfo& info, const Bytes& source) const {
        return gdi32.StretchDIBits(dc, 0, 0, info_.biWidth, std::abs(info_.biHeight), 0, 0,
                                   info.biWidth, std::abs(info.biHeight), source, info,
                                   kDibRgbColors, kSrcCopy);
    }

    DeviceContext dc{};
    BitmapHandle bitmap{};
    GdiObject former;
    void* bits = nullptr;

private:
    BitmapInfo info_;
};

/// A pen or brush that is selected in a context for a time, and deleted after.
class Selected {
public:
    template <class Handle>
    Selected(DeviceContext dc, Handle object)
        : dc_(dc), object_(object), former_(gdi32.SelectObject(dc, object)) {
        EXPECT_FALSE(former_.isNone());
    }
    Selected(const Selected&) = delete;
    Selected& operator=(const Selected&) = delete;
    ~Selected() {
        EXPECT_EQ(gdi32.SelectObject(dc_, former_), object_);
        EXPECT_TRUE(gdi32.DeleteObject(object_));
    }

private:
    DeviceContext dc_;
    GdiObject object_;
    GdiObject former_;
};

}  // namespace orvane::platform

#pragma once

#include "platform/linux/pixel_format.h"

#include <array>
#include <cstddef>
#include <cstdint>

namespace orvane::platform {

/// The quick way to copy a piece of a row without scaling, for the formats that pictures come in:
/// the same format on both sides, an 8-bit palette or 24 bits to 24 or 32, and 32 bits to 24.
/// Chosen once for all rows of a picture.
class RowCopy {
public:
    /// No quick way.
    RowCopy() = default;
    /// The way from `source` to `target`, if there is one. A monochrome target has its own rule for
    /// colours and takes only what is black and white already.
    RowCopy(const PixelFormat& source, const PixelFormat& target, bool monochrome);

    explicit operator bool() const { return copy_ != nullptr; }

    /// Copies `count` pixels from pixel `sourceFirst` to pixel `targetFirst`. The rows may be one.
    void operator()(std::uint8_t* target, std::size_t targetFirst, const std::uint8_t* source,
                    std::size_t sourceFirst, std::size_t count) const {
        copy_(*this, target + targetFirst * targetBytes_, source + sourceFirst * sourceBytes_,
              count);
    }

private:
    using Copy = void (*)(const RowCopy& self, std::uint8_t* target, const std::uint8_t* source,
                          std::size_t count);

    static void same(const RowCopy& self, std::uint8_t* target, const std::uint8_t* source,
                     std::size_t count);
    static void paletteTo24(const RowCopy& self, std::uint8_t* target, const std::uint8_t* source,
                            std::size_t count);
    static void paletteTo32(const RowCopy& self, std::uint8_t* target, const std::uint8_t* source,
                            std::size_t count);
    static void widen(const RowCopy& self, std::uint8_t* target, const std::uint8_t* source,
                      std::size_t count);
    static void narrow(const RowCopy& self, std::uint8_t* target, const std::uint8_t* source,
                       std::size_t count);

    Copy copy_ = nullptr;
    std::size_t sourceBytes_ = 0;
    std::size_t targetBytes_ = 0;
    std::array<std::uint32_t, 256> palette_{};
};

}  // namespace orvane::platform

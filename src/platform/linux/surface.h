#pragma once

#include "platform/linux/handle_table.h"
#include "platform/linux/pixel_format.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>

namespace orvane::platform {

/// Memory of a surface: zeroes that cost no memory before they are written, or memory of another
/// owner that is told when it is no longer used.
class PixelBlock {
public:
    PixelBlock() = default;
    /// `size` bytes of zero; `data` is null when the system has no memory for them.
    explicit PixelBlock(std::size_t size);
    /// Takes over `data`; `release` gives it back.
    PixelBlock(std::uint8_t* data, std::size_t size, std::function<void()> release);
    PixelBlock(PixelBlock&& other) noexcept;
    PixelBlock& operator=(PixelBlock&& other) noexcept;
    ~PixelBlock();

    std::uint8_t* data() const { return data_; }
    std::size_t size() const { return size_; }

private:
    std::uint8_t* data_ = nullptr;
    std::size_t size_ = 0;
    std::function<void()> release_;
};

/// What device contexts select. Their lock guards it.
struct Selectable {
    std::uint32_t selections = 0;  ///< in how many contexts it is selected
    bool isDeleted = false;        ///< goes when it is no longer selected
    bool isStock = false;          ///< every new context has it; it is never deleted
};

/// A bitmap: rows of pixels in memory, each padded to a multiple of 4 bytes.
class Surface : public Selectable {
public:
    using Handle = BitmapHandle;
    static constexpr HandleKind kKind = HandleKind::bitmap;

    /// A surface of zeroes, `width` and `height` above 0. Null with the last error 87 for a size or
    /// format that there is not, with 8 when the pixels take 2^31 bytes or the memory is not there.
    static std::shared_ptr<Surface> create(std::int32_t width, std::int32_t height,
                                           PixelFormat format, bool topDown);

    /// A surface over pixels that are there already, rows from the top, `stride` bytes apart.
    /// Null with the last error 87 when they are fewer than the size takes.
    static std::shared_ptr<Surface> adopt(std::int32_t width, std::int32_t height,
                                          PixelFormat format, std::size_t stride,
                                          PixelBlock pixels);

    std::int32_t width() const { return width_; }
    std::int32_t height() const { return height_; }
    std::size_t stride() const { return stride_; }
    const PixelFormat& format() const { return format_; }

    /// The first byte of the stored pixels, whichever row that is.
    const std::uint8_t* bits() const { return pixels_->data(); }
    /// Row `y` from the top.
    const std::uint8_t* row(std::int32_t y) const { return bits() + offsetOf(y); }
    bool isTopDown() const { return topDown_; }

    /// Row `y` from the top, to write to. Only between `own` and the next `copy`.
    std::uint8_t* ownRow(std::int32_t y) { return pixels_->data() + offsetOf(y); }
    /// Has pixels that no copy shares, before any is written; std::bad_alloc when there is no
    /// memory for them.
    void own();
    /// The first byte of the stored pixels, for somebody who writes there whenever he likes: copies
    /// that are made from now on have pixels of their own at once.
    std::uint8_t* expose();

    /// A surface with the same pixels, which both share until one of them is written to; null with
    /// the last error 8.
    std::shared_ptr<Surface> copy() const;

    /// Black and white without a palette of its own: what is drawn on it from a coloured source is
    /// white where the source has its context's background colour, and black elsewhere; drawn on a
    /// coloured target, its black and white are that context's text and background colours.
    bool isMonochrome = false;

private:
    std::size_t offsetOf(std::int32_t y) const {
        const std::int32_t stored = topDown_ ? y : height_ - 1 - y;
        return static_cast<std::size_t>(stored) * stride_;
    }

    std::int32_t width_ = 0;
    std::int32_t height_ = 0;
    std::size_t stride_ = 0;
    bool topDown_ = false;
    bool isExposed_ = false;
    PixelFormat format_;
    std::shared_ptr<PixelBlock> pixels_;
};

}  // namespace orvane::platform

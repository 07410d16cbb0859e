#include "pictures/CGDIPlusImage.h"

#include "pictures/gdiplus_status.h"
#include "platform/ole32.h"

#include <array>
#include <span>
#include <utility>

namespace orvane {

using platform::GdiplusImage;
using platform::GdiplusStatus;

namespace {

/// Bits per pixel of GDI+'s pixel formats.
struct FormatBits {
    std::uint32_t format;
    std::int32_t bits;
};
constexpr std::array kFormatBits = {
    FormatBits{0x30101, 1},   FormatBits{0x30402, 4},    FormatBits{0x30803, 8},
    FormatBits{0x21005, 16},  FormatBits{0x21006, 16},   FormatBits{0x61007, 16},
    FormatBits{0x101004, 16}, FormatBits{0x21808, 24},   FormatBits{0x22009, 32},
    FormatBits{0x26200A, 32}, FormatBits{0xE200B, 32},   FormatBits{0x10300C, 48},
    FormatBits{0x34400D, 64}, FormatBits{0x1C4000E, 64},
};

/// The buffer for an identifier's text, of which the last unit stays for a NUL.
constexpr std::size_t kTextBuffer = 101;
constexpr std::size_t kTextLimit = 100;

}  // namespace

void CGDIPlusImage::LoadImage(WStringView fileName) {
    FreeImage();
    const GdiplusStatus status =
        platform::gdiplus.GdipLoadImageFromFile(std::u16string(fileName), handle_);
    if (status != GdiplusStatus::ok) handle_ = GdiplusImage::none;
    requireOk(status, u"Can't load image from file. ");
}

void CGDIPlusImage::FreeImage() {
    if (handle_ == GdiplusImage::none) return;
    platform::gdiplus.GdipDisposeImage(std::exchange(handle_, GdiplusImage::none));
}

std::int32_t CGDIPlusImage::Width() const {
    std::uint32_t width = 0;
    requireBound(platform::gdiplus.GdipGetImageWidth(handle_, width));
    return static_cast<std::int32_t>(width);
}

std::int32_t CGDIPlusImage::Height() const {
    std::uint32_t height = 0;
    requireBound(platform::gdiplus.GdipGetImageHeight(handle_, height));
    return static_cast<std::int32_t>(height);
}

WString CGDIPlusImage::RawFormatCLSID() const {
    platform::ClassIdBytes format;
    const GdiplusStatus status =
        requireBound(platform::gdiplus.GdipGetImageRawFormat(handle_, format));
    if (status != GdiplusStatus::ok) return u"";
    std::array<char16_t, kTextBuffer> text{};
    platform::ole32.StringFromGUID2(format, std::span(text).first(kTextLimit));
    return text.data();
}

std::int32_t CGDIPlusImage::PixelFormat() const {
    std::uint32_t format = 0;
    requireBound(platform::gdiplus.GdipGetImagePixelFormat(handle_, format));
    return static_cast<std::int32_t>(format);
}

std::int32_t CGDIPlusImage::BPP() const {
    const auto format = static_cast<std::uint32_t>(PixelFormat());
    for (const FormatBits& known : kFormatBits) {
        if (known.format == format) return known.bits;
    }
    return 0;
}

}  // namespace orvane

#pragma once

#include "platform/handles.h"
#include "platform/ole32.h"
#include "platform/operation.h"

namespace orvane::platform {

/// What a GDI+ function answers: its published status numbers, and one of our own below zero.
enum class GdiplusStatus : std::int32_t {
    /// GDI+ is not on this system (last error 126), or lacks the function (127).
    notBound = -1,
    ok = 0,
    genericError = 1,
    invalidParameter = 2,
    outOfMemory = 3,
    objectBusy = 4,
    insufficientBuffer = 5,
    notImplemented = 6,
    win32Error = 7,
    wrongState = 8,
    aborted = 9,
    fileNotFound = 10,
    valueOverflow = 11,
    accessDenied = 12,
    unknownImageFormat = 13,
    unsupportedVersion = 17,
    notInitialized = 18
};
void describe(std::string& out, GdiplusStatus status);
constexpr bool failsAs(GdiplusStatus status) {
    return status != GdiplusStatus::ok;
}

enum class GdiplusToken : std::uint32_t { none = 0 };
enum class GdiplusImage : std::uint32_t { none = 0 };
enum class GdiplusGraphics : std::uint32_t { none = 0 };

/// `GdiplusStartupInput`.
struct GdiplusStartupInput {
    std::uint32_t version = 1;
    void* debugEventCallback = nullptr;
    bool suppressBackgroundThread = false;
    bool suppressExternalCodecs = false;
};
void describe(std::string& out, const GdiplusStartupInput& input);

/// The flat functions of GDI+, bound by name at the first call of each. What they hand out is
/// given back before the shutdown of the token.
struct Gdiplus {
    /// Starts GDI+; called without a place for the start-up output.
    Operation<GdiplusStatus(GdiplusToken& token, const GdiplusStartupInput& input)> GdiplusStartup{
        "gdiplus",
        "GdiplusStartup",
        GdiplusStatus::genericError,
        kErrorModuleNotFound,
        {"gdiplus", 0}};
    Operation<void(GdiplusToken token)> GdiplusShutdown{
        "gdiplus", "GdiplusShutdown", {}, 0, {"gdiplus", Holding::kNothing, 0}};
    /// An image over a file. GDI+ may keep the file open as long as the image lives.
    Operation<GdiplusStatus(const std::u16string& fileName, GdiplusImage& image)>
        GdipLoadImageFromFile{"gdiplus",
                              "GdipLoadImageFromFile",
                              GdiplusStatus::genericError,
                              kErrorNotEnoughMemory,
                              {"image", 1}};
    Operation<GdiplusStatus(GdiplusImage image)> GdipDisposeImage{"gdiplus",
                                                                  "GdipDisposeImage",
                                                                  GdiplusStatus::invalidParameter,
                                                                  kErrorInvalidHandle,
                                                                  {"image", Holding::kNothing, 0}};
    /// Sizes in pixels.
    Operation<GdiplusStatus(GdiplusImage image, std::uint32_t& width)> GdipGetImageWidth{
        "gdiplus", "GdipGetImageWidth", GdiplusStatus::invalidParameter, kErrorInvalidHandle};
    Operation<GdiplusStatus(GdiplusImage image, std::uint32_t& height)> GdipGetImageHeight{
        "gdiplus", "GdipGetImageHeight", GdiplusStatus::invalidParameter, kErrorInvalidHandle};
    /// The published identifier of the file's format.
    Operation<GdiplusStatus(GdiplusImage image, ClassIdBytes& format)> GdipGetImageRawFormat{
        "gdiplus", "GdipGetImageRawFormat", GdiplusStatus::invalidParameter, kErrorInvalidHandle};
    /// One of the published pixel formats: bits 8 to 15 are the bits per pixel.
    Operation<GdiplusStatus(GdiplusImage image, std::uint32_t& format)> GdipGetImagePixelFormat{
        "gdiplus", "GdipGetImagePixelFormat", GdiplusStatus::invalidParameter, kErrorInvalidHandle};
    Operation<GdiplusStatus(DeviceContext dc, GdiplusGraphics& graphics)> GdipCreateFromHDC{
        "gdiplus",
        "GdipCreateFromHDC",
        GdiplusStatus::outOfMemory,
        kErrorNotEnoughMemory,
        {"graphics", 1}};
    Operation<GdiplusStatus(GdiplusGraphics graphics)> GdipDeleteGraphics{
        "gdiplus",
        "GdipDeleteGraphics",
        GdiplusStatus::invalidParameter,
        kErrorInvalidHandle,
        {"graphics", Holding::kNothing, 0}};
    /// Draws the whole image into a rectangle of pixels, over what is there.
    Operation<GdiplusStatus(GdiplusGraphics graphics, GdiplusImage image, std::int32_t x,
                            std::int32_t y, std::int32_t width, std::int32_t height)>
        GdipDrawImageRectI{"gdiplus", "GdipDrawImageRectI", GdiplusStatus::genericError,
                           kErrorInvalidHandle};

    template <class Visitor>
    constexpr void visit(Visitor&& visitor) {
        visitor(GdiplusStartup, GdiplusShutdown, GdipLoadImageFromFile, GdipDisposeImage,
                GdipGetImageWidth, GdipGetImageHeight, GdipGetImageRawFormat,
                GdipGetImagePixelFormat, GdipCreateFromHDC, GdipDeleteGraphics, GdipDrawImageRectI);
    }
};
extern Gdiplus gdiplus;

}  // namespace orvane::platform

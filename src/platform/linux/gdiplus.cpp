#include "platform/gdiplus.h"

#include "platform/linux/codecs_module.h"
#include "platform/linux/errors.h"
#include "platform/linux/gdi32_objects.h"
#include "platform/linux/names.h"
#include "platform/linux/picture_content.h"
#include "platform/linux/picture_file.h"
#include "platform/linux/raster.h"

#include <atomic>
#include <memory>
#include <new>
#include <utility>

// GDI+ over the decoders of libOrvanePictures.so. An image keeps its file's bytes and is unpacked
// when it is drawn, straight into the surface.

namespace orvane::platform {

namespace {

/// A start-up.
struct Session {
    using Handle = GdiplusToken;
    static constexpr HandleKind kKind = HandleKind::gdiplusToken;
};

struct Image {
    using Handle = GdiplusImage;
    static constexpr HandleKind kKind = HandleKind::gdiplusImage;

    FileBytes file;
    OrvaneImageFacts facts{};
};

struct Graphics {
    using Handle = GdiplusGraphics;
    static constexpr HandleKind kKind = HandleKind::gdiplusGraphics;

    DeviceContext dc = DeviceContext::none;
};

/// Start-ups that were not shut down. Without one every call is refused.
constinit std::atomic<std::int32_t> sessions = 0;

/// A new handle of `object` in `handle`.
template <class Object>
GdiplusStatus handOut(std::shared_ptr<Object> object, typename Object::Handle& handle) {
    handle = addHandle(std::move(object));
    return handle == Object::Handle::none ? GdiplusStatus::outOfMemory : GdiplusStatus::ok;
}

GdiplusStatus startup(GdiplusToken& token, const GdiplusStartupInput& input) {
    constexpr std::uint32_t kVersion = 1;
    token = GdiplusToken::none;
    if (input.version != kVersion) return GdiplusStatus::unsupportedVersion;
    if (codecTable() == nullptr) return failWith(kErrorModuleNotFound, GdiplusStatus::notBound);
    try {
        const GdiplusStatus status = handOut(std::make_shared<Session>(), token);
        if (status == GdiplusStatus::ok) ++sessions;
        return status;
    } catch (const std::bad_alloc&) {
        return GdiplusStatus::outOfMemory;
    }
}

void shutdown(GdiplusToken token) {
    if (removeHandle<Session>(token) != nullptr) --sessions;
}

bool wantsImage(const FileBytes& start) {
    return !wasRefused(start.identity) &&
           codecTable()->recognisesImage(start.data.get(), start.size) != 0;
}

/// Like GDI+, what isn't an image counts as memory that ran out.
GdiplusStatus statusOf(std::int32_t runtimeError) {
    switch (runtimeError) {
    case 0:
        return GdiplusStatus::ok;
    case kRuntimeFileNotFound:
        return GdiplusStatus::fileNotFound;
    case kRuntimeFileAccess:
        return GdiplusStatus::accessDenied;
    default:
        return GdiplusStatus::outOfMemory;
    }
}

GdiplusStatus loadImage(const std::u16string& fileName, GdiplusImage& handle) {
    auto image = std::make_shared<Image>();
    const std::u16string_view name(fileName.c_str());
    if (name.empty()) return GdiplusStatus::invalidParameter;
    const std::int32_t failure = readPictureFile(utf8Text(name), wantsImage, image->file);
    if (failure != 0) return statusOf(failure);
    const std::span<const std::uint8_t> bytes = image->file.bytes();
    if (codecTable()->examine(bytes.data(), bytes.size(), &image->facts) != ORVANE_CODEC_OK) {
        return GdiplusStatus::outOfMemory;
    }
    return handOut(std::move(image), handle);
}

GdiplusStatus loadImageFromFile(const std::u16string& fileName, GdiplusImage& image) {
    image = GdiplusImage::none;
    if (sessions == 0) return GdiplusStatus::notInitialized;
    try {
        return loadImage(fileName, image);
    } catch (const std::bad_alloc&) {
        return GdiplusStatus::outOfMemory;
    }
}

GdiplusStatus disposeImage(GdiplusImage image) {
    return removeHandle<Image>(image) == nullptr ? GdiplusStatus::invalidParameter
                                                 : GdiplusStatus::ok;
}

/// Gives `use` what is known of an image.
template <class Use>
GdiplusStatus withFacts(GdiplusImage handle, Use&& use) {
    const auto image = findObject<Image>(handle);
    if (image == nullptr) return GdiplusStatus::invalidParameter;
    use(image->facts);
    return GdiplusStatus::ok;
}

GdiplusStatus imageWidth(GdiplusImage image, std::uint32_t& width) {
    return withFacts(image, [&](const OrvaneImageFacts& facts) { width = facts.width; });
}

GdiplusStatus imageHeight(GdiplusImage image, std::uint32_t& height) {
    return withFacts(image, [&](const OrvaneImageFacts& facts) { height = facts.height; });
}

/// The published identifiers ImageFormatBMP and so on, which differ in their first byte:
/// {B96B3CAB-0728-11D3-9D7B-0000F81EF32E}.
ClassIdBytes identifierOf(std::uint32_t format) {
    std::uint8_t first = 0xAB;
    switch (format) {
    case ORVANE_IMAGE_JPEG:
        first = 0xAE;
        break;
    case ORVANE_IMAGE_GIF:
        first = 0xB0;
        break;
    case ORVANE_IMAGE_ICON:
        first = 0xB5;
        break;
    case ORVANE_IMAGE_PNG:
        first = 0xAF;
        break;
    case ORVANE_IMAGE_TIFF:
        first = 0xB1;
        break;
    default:
        break;
    }
    return {{first, 0x3C, 0x6B, 0xB9, 0x28, 0x07, 0xD3, 0x11, 0x9D, 0x7B, 0, 0, 0xF8, 0x1E, 0xF3,
             0x2E}};
}

GdiplusStatus imageRawFormat(GdiplusImage image, ClassIdBytes& format) {
    return withFacts(image,
                     [&](const OrvaneImageFacts& facts) { format = identifierOf(facts.format); });
}

GdiplusStatus imagePixelFormat(GdiplusImage image, std::uint32_t& format) {
    return withFacts(image, [&](const OrvaneImageFacts& facts) { format = facts.pixelFormat; });
}

GdiplusStatus createFromHdc(DeviceContext dc, GdiplusGraphics& graphics) {
    graphics = GdiplusGraphics::none;
    if (sessions == 0) return GdiplusStatus::notInitialized;
    if (selectedSurface(dc) == nullptr) return GdiplusStatus::outOfMemory;
    try {
        auto made = std::make_shared<Graphics>();
        made->dc = dc;
        return handOut(std::move(made), graphics);
    } catch (const std::bad_alloc&) {
        return GdiplusStatus::outOfMemory;
    }
}

GdiplusStatus deleteGraphics(GdiplusGraphics graphics) {
    return removeHandle<Graphics>(graphics) == nullptr ? GdiplusStatus::invalidParameter
                                                       : GdiplusStatus::ok;
}

bool isCanvas(const Surface& surface) {
    return surface.format() == PixelFormat::ofDepth(32);
}

GdiplusStatus paint(const Image& image, Surface& surface) {
    surface.own();
    const std::ptrdiff_t stride = static_cast<std::ptrdiff_t>(surface.stride());
    const OrvaneCanvas canvas{static_cast<std::uint32_t>(surface.width()),
                              static_cast<std::uint32_t>(surface.height()), surface.ownRow(0),
                              surface.isTopDown() ? stride : -stride};
    const std::span<const std::uint8_t> bytes = image.file.bytes();
    switch (codecTable()->paint(bytes.data(), bytes.size(), &canvas)) {
    case ORVANE_CODEC_OK:
        return GdiplusStatus::ok;
    case ORVANE_CODEC_OUT_OF_MEMORY:
        return GdiplusStatus::outOfMemory;
    default:
        return GdiplusStatus::genericError;
    }
}

/// Paints beside the surface, on a copy of what the rectangle shows, and puts the result there.
GdiplusStatus paintBeside(const Image& image, Surface& surface, const Area& area) {
    const auto beside =
        Surface::create(static_cast<std::int32_t>(area.width),
                        static_cast<std::int32_t>(area.height), PixelFormat::ofDepth(32), true);
    if (beside == nullptr) return GdiplusStatus::outOfMemory;
    const Area whole{0, 0, area.width, area.height};
    transfer(*beside, whole, viewOf(surface), area, kSrcCopy);
    const GdiplusStatus status = paint(image, *beside);
    if (status == GdiplusStatus::ok) transfer(surface, area, viewOf(*beside), whole, kSrcCopy);
    return status;
}

// Drawn as large as it is: nobody here asks for more.
GdiplusStatus drawImageRect(GdiplusGraphics graphicsHandle, GdiplusImage imageHandle,
                            std::int32_t x, std::int32_t y, std::int32_t width,
                            std::int32_t height) {
    const auto graphics = findObject<Graphics>(graphicsHandle);
    const auto image = findObject<Image>(imageHandle);
    if (graphics == nullptr || image == nullptr) return GdiplusStatus::invalidParameter;
    const auto surface = selectedSurface(graphics->dc);
    if (surface == nullptr) return GdiplusStatus::genericError;
    const OrvaneImageFacts& facts = image->facts;
    if (width <= 0 || height <= 0 || static_cast<std::uint32_t>(width) != facts.width ||
        static_cast<std::uint32_t>(height) != facts.height) {
        return GdiplusStatus::notImplemented;
    }
    const bool covers =
        x == 0 && y == 0 && surface->width() == width && surface->height() == height;
    try {
        if (covers && isCanvas(*surface)) return paint(*image, *surface);
        return paintBeside(*image, *surface, {x, y, width, height});
    } catch (const std::bad_alloc&) {
        return GdiplusStatus::outOfMemory;
    }
}

constexpr Gdiplus boundTable() {
    Gdiplus table;
    table.GdiplusStartup.bind<&startup>();
    table.GdiplusShutdown.bind<&shutdown>();
    table.GdipLoadImageFromFile.bind<&loadImageFromFile>();
    table.GdipDisposeImage.bind<&disposeImage>();
    table.GdipGetImageWidth.bind<&imageWidth>();
    table.GdipGetImageHeight.bind<&imageHeight>();
    table.GdipGetImageRawFormat.bind<&imageRawFormat>();
    table.GdipGetImagePixelFormat.bind<&imagePixelFormat>();
    table.GdipCreateFromHDC.bind<&createFromHdc>();
    table.GdipDeleteGraphics.bind<&deleteGraphics>();
    table.GdipDrawImageRectI.bind<&drawImageRect>();
    return table;
}
static_assert(allBound(boundTable()));

}  // namespace

constinit Gdiplus gdiplus = boundTable();

}  // namespace orvane::platform

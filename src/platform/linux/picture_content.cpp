#include "platform/linux/picture_content.h"

#include "platform/linux/codecs_module.h"
#include "platform/linux/errors.h"
#include "platform/linux/gdi32_objects.h"
#include "platform/linux/icons.h"

#include <orvane/automation.h>

#include <cstring>
#include <new>
#include <utility>

namespace orvane::platform {

namespace {

/// A decoded picture, freed by the module it comes from.
class Decoded {
public:
    explicit Decoded(const OrvaneCodecTable& table) : table_(table) {}
    Decoded(const Decoded&) = delete;
    Decoded& operator=(const Decoded&) = delete;
    ~Decoded() { table_.release(&picture); }

    /// Takes pixels out of the picture; the module still frees them.
    PixelBlock take(std::uint8_t*& pixels, std::size_t size) {
        std::uint8_t* const taken = std::exchange(pixels, nullptr);
        return PixelBlock(taken, size, [release = table_.release, taken] {
            OrvaneDecoded last{};
            last.pixels = taken;
            release(&last);
        });
    }

    OrvaneDecoded picture{};

private:
    const OrvaneCodecTable& table_;
};

PixelFormat formatOf(const OrvaneDecoded& picture, std::uint32_t bits) {
    if (!isDepth(bits)) {
        return {};
    }
    PixelFormat format = PixelFormat::ofDepth(bits);
    if (bits == 16 || bits == 32) {
        format.redMask = picture.redMask;
        format.greenMask = picture.greenMask;
        format.blueMask = picture.blueMask;
    }
    for (std::size_t i = 0; i < format.palette.size(); ++i) {
        const std::uint8_t* entry = picture.palette + i * 4;
        format.palette[i] =
            entry[0] | (std::uint32_t{entry[1]} << 8) | (std::uint32_t{entry[2]} << 16);
    }
    return format;
}

std::uint32_t bitmapOf(Decoded& decoded) {
    OrvaneDecoded& picture = decoded.picture;
    auto surface =
        Surface::adopt(picture.width, picture.height,
                       formatOf(picture, static_cast<std::uint32_t>(picture.bitsPerPixel)),
                       picture.stride, decoded.take(picture.pixels, picture.pixelBytes));
    return surface == nullptr ? 0 : static_cast<std::uint32_t>(addHandle(std::move(surface)));
}

std::uint32_t iconOf(Decoded& decoded) {
    OrvaneDecoded& picture = decoded.picture;
    auto icon = std::make_shared<Icon>();
    icon->isIcon = picture.isIcon != 0;
    icon->hotspotX = static_cast<std::uint32_t>(picture.hotspotX);
    icon->hotspotY = static_cast<std::uint32_t>(picture.hotspotY);
    icon->color = Surface::adopt(picture.width, picture.height, formatOf(picture, 32),
                                 picture.stride, decoded.take(picture.pixels, picture.pixelBytes));
    PixelFormat mask = PixelFormat::ofDepth(1);
    mask.palette = {0, 0xFFFFFF};
    icon->mask = Surface::adopt(picture.width, picture.height, std::move(mask), picture.maskStride,
                                decoded.take(picture.mask, picture.maskBytes));
    if (icon->color == nullptr || icon->mask == nullptr) {
        return 0;
    }
    icon->mask->isMonochrome = true;
    return static_cast<std::uint32_t>(addHandle(std::move(icon)));
}

std::uint32_t metafileOf(const Decoded& decoded) {
    auto metafile = std::make_shared<Metafile>();
    metafile->bytes.assign(decoded.picture.file, decoded.picture.file + decoded.picture.fileBytes);
    return static_cast<std::uint32_t>(addHandle(std::move(metafile)));
}

std::uint32_t handleOf(Decoded& decoded) {
    switch (decoded.picture.kind) {
    case ORVANE_PICTURE_BITMAP:
        return bitmapOf(decoded);
    case ORVANE_PICTURE_ICON:
        return iconOf(decoded);
    case ORVANE_PICTURE_METAFILE:
    case ORVANE_PICTURE_ENHANCED_METAFILE:
        return metafileOf(decoded);
    default:
        return failWith(kErrorInvalidParameter, 0u);
    }
}

}  // namespace

std::int32_t himetricFromPixels(std::int32_t pixels) {
    constexpr std::int64_t kHimetricPerInch = 2540;
    constexpr std::int64_t kPixelsPerInch = 96;
    const std::int64_t size = (pixels * kHimetricPerInch + kPixelsPerInch / 2) / kPixelsPerInch;
    return size > INT32_MAX ? INT32_MAX : static_cast<std::int32_t>(size);
}

bool contentFromDescription(const PictureDescription& description, bool own,
                            PictureContent& content) {
    std::shared_ptr<Surface> surface;
    std::uint32_t handle = 0;
    if (description.type == PICTYPE_NONE) {
        content = {};
        return true;
    }
    if (description.type == PICTYPE_BITMAP) {
        surface = findObject<Surface>(description.bitmap);
        handle = static_cast<std::uint32_t>(description.bitmap);
    } else if (description.type == PICTYPE_ICON) {
        const auto icon = findObject<Icon>(description.icon);
        surface = icon == nullptr ? nullptr : icon->color;
        handle = static_cast<std::uint32_t>(description.icon);
    } else {
        return failWith(kErrorInvalidParameter, false);
    }
    if (surface == nullptr) {
        return false;
    }
    content = {description.type, handle, own, himetricFromPixels(surface->width()),
               himetricFromPixels(surface->height())};
    return true;
}

bool isKnownPicture(std::span<const std::uint8_t> start) {
    const OrvaneCodecTable* table = codecTable();
    return table == nullptr || table->recognises(start.data(), start.size()) != 0;
}

std::int32_t contentFromFile(std::span<const std::uint8_t> file, PictureContent& content) {
    const OrvaneCodecTable* table = codecTable();
    if (table == nullptr) {
        return failWith(kErrorModuleNotFound, kRuntimeInvalidPicture);
    }
    try {
        Decoded decoded(*table);
        const int result = table->decode(file.data(), file.size(), &decoded.picture);
        if (result != ORVANE_CODEC_OK) {
            return result == ORVANE_CODEC_OUT_OF_MEMORY ? kRuntimeOutOfMemory
                                                        : kRuntimeInvalidPicture;
        }
        const std::uint32_t handle = handleOf(decoded);
        if (handle == 0) {
            return lastError() == kErrorInvalidParameter ? kRuntimeInvalidPicture
                                                         : kRuntimeOutOfMemory;
        }
        const OrvaneDecoded& picture = decoded.picture;
        const bool inPixels =
            picture.kind == ORVANE_PICTURE_BITMAP || picture.kind == ORVANE_PICTURE_ICON;
        content = {static_cast<std::int16_t>(picture.kind), handle, true,
                   inPixels ? himetricFromPixels(picture.width) : picture.width,
                   inPixels ? himetricFromPixels(picture.height) : picture.height};
        return 0;
    } catch (const std::bad_alloc&) {
        return kRuntimeOutOfMemory;
    }
}

void releaseContent(PictureContent& content) {
    const PictureContent last = std::exchange(content, {});
    if (!last.own) {
        return;
    }
    const std::uint32_t before = lastError();
    if (last.type == PICTYPE_BITMAP) {
        deleteObject(BitmapHandle{last.handle});
    } else if (last.type == PICTYPE_ICON) {
        removeHandle<Icon>(IconHandle{last.handle});
    } else {
        removeHandle<Metafile>(MetafileHandle{last.handle});
    }
    setLastError(before);
}

}  // namespace orvane::platform

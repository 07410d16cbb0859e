#include "drawn_picture.h"

#include "icon_image.h"

#include <algorithm>
#include <cstdint>

namespace orvane::tool {

namespace {

/// The longer side of a metafile, which has no pixels of its own.
constexpr std::int64_t kMetafileSide = 480;

/// A device context of the library's, deleted at the end.
class Drawing {
public:
    Drawing(host::Library& library, LONG width, LONG height) : runtime_(library.runtime()) {
        if (FAILED(runtime_->CreateDrawing(width, height, &dc_, &pixels_))) pixels_ = nullptr;
    }
    Drawing(const Drawing&) = delete;
    Drawing& operator=(const Drawing&) = delete;
    ~Drawing() {
        if (pixels_ != nullptr) runtime_->DeleteDrawing(dc_);
    }

    HDC dc() const { return dc_; }
    /// Blue, green, red and a byte that means nothing; null when there is no memory for them.
    BYTE* pixels() const { return pixels_; }

private:
    host::Pointer<IOrvaneRuntime> runtime_;
    HDC dc_ = nullptr;
    BYTE* pixels_ = nullptr;
};

std::optional<RgbImage> drawnMetafile(Library& library, const LoadedPicture& loaded, Rgb ground) {
    const auto picture = loaded.picture.query<IPicture>(IID_IPicture);
    OLE_XSIZE_HIMETRIC width = 0;
    OLE_YSIZE_HIMETRIC height = 0;
    if (!picture || FAILED(picture->get_Width(&width)) || FAILED(picture->get_Height(&height)) ||
        width <= 0 || height <= 0) {
        return {};
    }
    const std::int64_t longer = std::max(width, height);
    const auto pixels = [&](std::int64_t side) {
        return static_cast<LONG>(
            std::max<std::int64_t>((side * kMetafileSide + longer / 2) / longer, 1));
    };
    RgbImage image(static_cast<std::uint32_t>(pixels(width)),
                   static_cast<std::uint32_t>(pixels(height)));
    const Drawing drawing(library.host(), pixels(width), pixels(height));
    if (drawing.pixels() == nullptr) return {};
    for (std::size_t i = 0; i < image.pixels.size(); ++i) {
        BYTE* const pixel = drawing.pixels() + i * 4;
        pixel[0] = ground.blue;
        pixel[1] = ground.green;
        pixel[2] = ground.red;
    }
    // The source is measured from its bottom, upwards.
    if (FAILED(picture->Render(drawing.dc(), 0, 0, pixels(width), pixels(height), 0, height, width,
                               -height, nullptr))) {
        return {};
    }
    for (std::size_t i = 0; i < image.pixels.size(); ++i) {
        const BYTE* const pixel = drawing.pixels() + i * 4;
        image.pixels[i] = {pixel[2], pixel[1], pixel[0]};
    }
    return image;
}

}  // namespace

std::optional<RgbImage> drawnPicture(Library& library, const LoadedPicture& loaded, Rgb ground) {
    if (loaded.isIcon()) return rgbFromIcon(iconOf(loaded), ground);
    return drawnMetafile(library, loaded, ground);
}

}  // namespace orvane::tool

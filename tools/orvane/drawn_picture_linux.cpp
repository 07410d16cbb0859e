#include "drawn_picture.h"

#include "icon_image.h"

namespace orvane::tool {

std::optional<RgbImage> drawnPicture(const LoadedPicture& loaded, Rgb ground) {
    if (!loaded.isIcon()) return {};
    return rgbFromIcon(iconOf(loaded), ground);
}

}  // namespace orvane::tool

#pragma once

#include "rgb_image.h"

#include <optional>
#include <string>
#include <vector>

namespace orvane::tool {

/// What transparent parts of a thumbnail show.
inline constexpr Rgb kThumbnailGround{0xF4, 0xF3, 0xF0};

/// One picture of a contact sheet. Texts are UTF-8.
struct SheetEntry {
    std::string name;
    std::string facts;              ///< "PNG 640 × 480 24", or what is wrong with a broken file
    std::optional<RgbImage> image;  ///< none for a picture that can't be shown as pixels
    bool broken = false;
};

/// The thumbnail of a picture: as large as its place on a sheet allows, with the sides' ratio kept.
/// Very small pictures are enlarged by whole numbers, so that single pixels can be told.
RgbImage thumbnailOf(const RgbImage& image);

/// All entries, with thumbnails for images, on one page: rows of cards under a line that counts
/// them.
RgbImage contactSheet(const std::vector<SheetEntry>& entries);

}  // namespace orvane::tool

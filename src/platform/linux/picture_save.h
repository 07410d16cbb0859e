#pragma once

#include "platform/linux/icons.h"
#include "platform/linux/picture_content.h"
#include "platform/linux/surface.h"

#include <cstdint>
#include <vector>

/// The files that picture objects are saved as.
namespace orvane::platform {

/// A BMP file of the surface in its own depth: file header of 14 bytes, header of 40, channel masks
/// where they are not the usual ones, all palette entries, rows from the bottom. Empty when it
/// would take more than 2^31 - 1 bytes.
std::vector<std::uint8_t> bmpFile(const Surface& surface);

/// An ICO or CUR file with the one image, 32 bits and a mask.
std::vector<std::uint8_t> iconFile(const Icon& icon);

/// The file of a picture's content: BMP, ICO or CUR, or a metafile's own bytes. Empty when there is
/// no content or its handle was closed.
std::vector<std::uint8_t> savedContent(const PictureContent& content);

}  // namespace orvane::platform

#pragma once

#include "frame/values/picture.h"
#include "pictures/DecodedImage.h"
#include "pictures/PictureInfo.h"

namespace orvane {

/// Fills size and depth of a bitmap that the host's loader made from `fileName`, and tells from
/// the file's first bytes what it was: "BM" is a Windows bitmap, "GIF" in any case a GIF, and
/// whatever else the loader turned into a bitmap counts as JPEG.
orvPictureTypeEx DetectCommonBitmapType(const Picture& picture, WStringView fileName,
                                        DecodedImage& image);

}  // namespace orvane

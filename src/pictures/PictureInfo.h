#pragma once

#include "frame/automation/automation_object.h"
#include "pictures/DecodedImage.h"

namespace orvane {

/// What kind of file a picture came from.
enum class orvPictureTypeEx : std::int32_t {
    orvPteNothing = 0,
    orvPteBMP = 1,
    orvPteJPG = 2,
    orvPteGIF = 3,
    orvPteWMF = 4,
    orvPteEMF = 5,
    orvPteICO = 6,
    orvPteCUR = 7,
    orvPtePNG = 8,
    orvPtePSD = 9,
    orvPtePCX = 10,
    orvPteTGA = 11,
    orvPteTIFF = 12,
    orvPteUnknown = 99,
};
const automation::EnumTable& enumTable(orvPictureTypeEx);

/// The description of a loaded picture. Metafiles, icons and cursors have -1 as width, height and
/// depth.
class PictureInfo final : public automation::AutomationObject {
public:
    static const automation::ClassTable& table();

    PictureInfo();

    std::int32_t Width() { return width_; }    ///< pixels
    std::int32_t Height() { return height_; }  ///< pixels
    std::int32_t ImageBPP() { return bitsPerPixel_; }
    orvPictureTypeEx PictureType() { return type_; }
    /// The type's display name; "Unknown" for any value without one.
    WString GetPictureTypeName();

    /// For the readers: sets everything to 0.
    void ResetInfo();
    /// For the readers: takes size and depth from `image`.
    void SetInfo(const DecodedImage& image, orvPictureTypeEx type);

private:
    std::int32_t width_ = 0;
    std::int32_t height_ = 0;
    std::int32_t bitsPerPixel_ = 0;
    orvPictureTypeEx type_ = orvPictureTypeEx::orvPteNothing;
};

}  // namespace orvane

#include "pictures/CFileGDIPlus.h"

#include <array>

namespace orvane {
namespace {

struct RawFormat {
    const char16_t* identifier;
    orvPictureTypeEx type;
};

// GDI+'s published identifiers of its formats.
constexpr std::array kRawFormats = {
    RawFormat{u"{B96B3CAE-0728-11D3-9D7B-0000F81EF32E}", orvPictureTypeEx::orvPteJPG},
    RawFormat{u"{B96B3CB5-0728-11D3-9D7B-0000F81EF32E}", orvPictureTypeEx::orvPteICO},
    RawFormat{u"{B96B3CAB-0728-11D3-9D7B-0000F81EF32E}", orvPictureTypeEx::orvPteBMP},
    RawFormat{u"{B96B3CAF-0728-11D3-9D7B-0000F81EF32E}", orvPictureTypeEx::orvPtePNG},
    RawFormat{u"{B96B3CB0-0728-11D3-9D7B-0000F81EF32E}", orvPictureTypeEx::orvPteGIF},
    RawFormat{u"{B96B3CB1-0728-11D3-9D7B-0000F81EF32E}", orvPictureTypeEx::orvPteTIFF},
};

}  // namespace

orvPictureTypeEx pictureTypeOf(WStringView rawFormatCLSID) {
    for (const RawFormat& format : kRawFormats) {
        if (rawFormatCLSID == format.identifier) return format.type;
    }
    return orvPictureTypeEx::orvPteUnknown;
}

bool CFileGDIPlus::Verify(WStringView) {
    return true;
}

Picture CFileGDIPlus::LoadPicture(WStringView fileName, const Ref<PictureInfo>& info) {
    if (info) info->ResetInfo();
    if (!Verify(fileName)) return nullptr;
    Picture picture;
    PictureSize size;
    WString rawFormat;
    DecodedImage image;
    ErrorTrap trap;
    trap([&] {
        if (!helper_) helper_ = std::make_unique<CGDIPlusHelper>();
        picture = helper_->LoadPicture(fileName, size, rawFormat, image.BitsPerPixel);
    });
    if (trap.number() != 0) return nullptr;
    image.Width = size.Width;
    image.Height = size.Height;
    if (info) info->SetInfo(image, pictureTypeOf(rawFormat));
    return picture;
}

}  // namespace orvane

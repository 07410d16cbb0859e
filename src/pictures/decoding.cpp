#include "pictures/decoding.h"

#include "pictures/modBitmapWorks.h"

namespace orvane {

Picture loadDecoded(IFileFormat& format, bool (*decode)(WStringView, DecodedImage&),
                    orvPictureTypeEx type, WStringView fileName, const Ref<PictureInfo>& info) {
    if (info) info->ResetInfo();
    if (!format.Verify(fileName)) return nullptr;
    DecodedImage image;
    if (!decode(fileName, image)) return nullptr;
    Picture picture = CreatePictureFromImage(image);
    if (info) info->SetInfo(image, type);
    return picture;
}

}  // namespace orvane

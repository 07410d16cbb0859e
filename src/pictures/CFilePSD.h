#pragma once

#include "pictures/DecodedImage.h"
#include "pictures/IFileFormat.h"

namespace orvane {

/// The reader for Photoshop documents: the merged image of RGB files with 8 bits a channel, raw or
/// PackBits. Layers are skipped and alpha is dropped. Which files load and which don't is fixed by
/// peculiarities that hosts rely on; each is told where it stands in the code.
class CFilePSD final : public IFileFormat {
public:
    /// True exactly when the file begins with "8BPS".
    bool Verify(WStringView fileName) override;
    Picture LoadPicture(WStringView fileName, const Ref<PictureInfo>& info) override;

    /// Decodes a file into `image`: always 24 bits, rows from the top. False when it can't be read;
    /// a file with less image data than its size takes is one of those.
    static bool ReadPSD(WStringView fileName, DecodedImage& image);
};

}  // namespace orvane

#pragma once

#include "frame/binary_file.h"
#include "pictures/DecodedImage.h"
#include "pictures/IFileFormat.h"

#include <cstdint>

namespace orvane {

/// The reader for Truevision Targa files: true colour only, uncompressed (type 2) and run-length
/// (type 10), of 16, 24 and 32 bits. Which files load and which don't is fixed by peculiarities
/// that hosts rely on; each is told where it stands in the code.
class CFileTGA final : public IFileFormat {
public:
    /// True exactly when the image type is 2 or 10.
    bool Verify(WStringView fileName) override;
    Picture LoadPicture(WStringView fileName, const Ref<PictureInfo>& info) override;

    /// Decodes a file into `image`: always 24 bits, rows from the top. False when it can't be read.
    /// A read past the end of the file yields zero bytes, so that a truncated file gives a picture
    /// that is black from there on.
    static bool ReadTGA(WStringView fileName, DecodedImage& image);
};

}  // namespace orvane

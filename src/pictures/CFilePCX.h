#pragma once

#include "pictures/DecodedImage.h"
#include "pictures/IFileFormat.h"

namespace orvane {

/// The reader for Zsoft Paintbrush files: one plane of palette indices with a palette of 256
/// colours at the end of the file, or three planes of red, green and blue lines. Which files load
/// and which don't is fixed by peculiarities that hosts rely on; each is told where it stands in
/// the code.
class CFilePCX final : public IFileFormat {
public:
    /// True exactly when the first byte is 10.
    bool Verify(WStringView fileName) override;
    Picture LoadPicture(WStringView fileName, const Ref<PictureInfo>& info) override;

    /// Decodes a file into `image`, rows from the top: 8 bits with a palette for one plane, else
    /// rows of 24 bits under a depth of 8 bits a plane, which is right for three planes alone.
    /// False when it can't be read. Lines of three planes that the file ends before are black.
    static bool ReadPCX(WStringView fileName, DecodedImage& image);
};

}  // namespace orvane

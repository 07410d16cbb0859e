#pragma once

#include "pictures/IFileFormat.h"

namespace orvane {

/// The reader through the host's own picture loader: BMP, JPEG, GIF, WMF, EMF, ICO and CUR.
class CFileCommon final : public IFileFormat {
public:
    /// Wants every file.
    bool Verify(WStringView fileName) override;
    Picture LoadPicture(WStringView fileName, const Ref<PictureInfo>& info) override;
};

}  // namespace orvane

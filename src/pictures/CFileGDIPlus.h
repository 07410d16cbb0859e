#pragma once

#include "pictures/CGDIPlusHelper.h"
#include "pictures/IFileFormat.h"

#include <memory>

namespace orvane {

/// The reader through GDI+: PNG and TIFF, and a second chance for what the host's loader refused.
/// GDI+ runs from the first file that is tried until the reader's end.
class CFileGDIPlus final : public IFileFormat {
public:
    /// Wants every file.
    bool Verify(WStringView fileName) override;
    /// Raises nothing: what goes wrong becomes Nothing, and the next reader is tried.
    Picture LoadPicture(WStringView fileName, const Ref<PictureInfo>& info) override;

private:
    std::unique_ptr<CGDIPlusHelper> helper_;
};

/// The type for GDI+'s identifier of a file's format, an upper-case text in braces.
orvPictureTypeEx pictureTypeOf(WStringView rawFormatCLSID);

}  // namespace orvane

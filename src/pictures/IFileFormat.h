#pragma once

#include "frame/automation/reference.h"
#include "frame/values/picture.h"
#include "pictures/PictureInfo.h"

namespace orvane {

/// A reader of picture files. The plain class wants no file and reads none.
class IFileFormat {
public:
    IFileFormat() = default;
    IFileFormat(const IFileFormat&) = delete;
    IFileFormat& operator=(const IFileFormat&) = delete;
    virtual ~IFileFormat() = default;

    /// Whether the reader wants this file.
    virtual bool Verify(WStringView fileName);
    /// The picture, or Nothing when the file could not be read; `info` (which may be Nothing) is
    /// reset first. Raises only what the drawing helpers raise, never for a file.
    virtual Picture LoadPicture(WStringView fileName, const Ref<PictureInfo>& info);
};

}  // namespace orvane

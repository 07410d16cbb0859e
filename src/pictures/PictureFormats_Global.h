#pragma once

#include "pictures/IFileFormat.h"

#include <memory>

namespace orvane {

/// The readers of picture files, one object each per apartment. A reader that this build does not
/// have is null and takes no part.
struct PictureFormats {
    std::unique_ptr<IFileFormat> psd;
    std::unique_ptr<IFileFormat> pcx;
    std::unique_ptr<IFileFormat> tga;
    std::unique_ptr<IFileFormat> common;
    std::unique_ptr<IFileFormat> gdiPlus;
};

/// The apartment's readers; those that are missing are created, in the order of the fields.
PictureFormats& EnsureFormats();

/// Lets a reader try a file unless there already is a `result`: takes its picture when the reader
/// wants the file.
void TryFormat(IFileFormat* format, WStringView fileName, const Ref<PictureInfo>& info,
               Picture& result);

/// The picture of the first reader that gives one; raises 481 when none does. The host's loader is
/// tried on everything, then GDI+, before the library's own readers look at the file.
Picture LoadPictureAnyFormat(WStringView fileName, const Ref<PictureInfo>& info);

}  // namespace orvane

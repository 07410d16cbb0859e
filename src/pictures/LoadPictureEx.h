#pragma once

#include "pictures/PictureInfo.h"

#include "frame/automation/reference.h"
#include "frame/values/picture.h"

namespace orvane {

/// The picture members of `orvMain`.

/// Loads a picture from a file in any format. An empty name gives a new, empty picture and leaves
/// `info` alone; else a missing `info` is created. Raises 53 when there is no such file, 481 when
/// no reader takes it.
Picture LoadPictureEx(WStringView fileName, Ref<PictureInfo>& info);

/// The same for scripts, whose variables hold anything: `info` must hold a `PictureInfo` or
/// Nothing, and gets the object back.
Variant LoadPictureExByVar(const Variant& fileName, Variant& info);

/// Loads a picture from its file's bytes by way of a temporary file, which is gone afterwards.
/// Raises what `LoadPictureEx` raises, and the file's error when the bytes can't be written: then
/// a file that was made stays.
Picture LoadResPictureByData(const Array<std::uint8_t>& data, Ref<PictureInfo>& info);

/// Which formats beside the bitmaps a file dialog's filter names.
struct FilterParts {
    bool icon;
    bool cursor;
    bool wmf;
    bool emf;
};

/// The filter for a file dialog, pieces separated by "|".
WString GetLoadPictureExFilter(const FilterParts& include);
/// Its pattern list alone.
WString GetLoadPictureExPattern(const FilterParts& include);

}  // namespace orvane

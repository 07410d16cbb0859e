#include "pictures/PictureFormats_Global.h"

#include "frame/automation/apartment.h"
#include "pictures/CFileCommon.h"
#include "pictures/CFileGDIPlus.h"
#include "pictures/CFilePCX.h"
#include "pictures/CFilePSD.h"
#include "pictures/CFileTGA.h"

namespace orvane {
namespace {

constinit automation::ApartmentState<PictureFormats> pictureFormats;

template <class Reader>
void ensure(std::unique_ptr<IFileFormat>& reader) {
    if (!reader) reader = std::make_unique<Reader>();
}

}  // namespace

PictureFormats& EnsureFormats() {
    PictureFormats& formats = pictureFormats.get();
    ensure<CFilePSD>(formats.psd);
    ensure<CFilePCX>(formats.pcx);
    ensure<CFileTGA>(formats.tga);
    ensure<CFileCommon>(formats.common);
    ensure<CFileGDIPlus>(formats.gdiPlus);
    return formats;
}

void TryFormat(IFileFormat* format, WStringView fileName, const Ref<PictureInfo>& info,
               Picture& result) {
    if (!result.isNothing() || format == nullptr) return;
    if (format->Verify(fileName)) result = format->LoadPicture(fileName, info);
}

Picture LoadPictureAnyFormat(WStringView fileName, const Ref<PictureInfo>& info) {
    const PictureFormats& formats = EnsureFormats();
    Picture result;
    for (const auto* format :
         {&formats.common, &formats.gdiPlus, &formats.psd, &formats.pcx, &formats.tga}) {
        TryFormat(format->get(), fileName, info, result);
    }
    if (result.isNothing()) raise(error::kInvalidPicture);
    return result;
}

}  // namespace orvane

#include "pictures/LoadPictureEx.h"

#include "frame/automation/host_picture.h"
#include "frame/binary_file.h"
#include "frame/values/codepage.h"
#include "frame/values/conversions.h"
#include "pictures/PictureFormats_Global.h"
#include "platform/kernel32.h"
#include "support/file_names.h"

namespace orvane {
namespace {

// A name that was just made is written to a file that must be new: nobody else's file or link is
// followed. Some systems tell only at the close that a file couldn't be written.
void WriteTempFile(WStringView path, const Array<std::uint8_t>& data) {
    platform::kernel32.DeleteFileA(toAnsi(path));
    BinaryFile file(path, FileMode::createNew);
    file.put(data.elements());
    file.close();
}

}  // namespace

Picture LoadPictureEx(WStringView fileName, Ref<PictureInfo>& info) {
    if (fileName.empty()) return emptyPicture();
    if (!nqIsFileExist(fileName)) raise(error::kFileNotFound);
    if (!info) info = make<PictureInfo>();
    return LoadPictureAnyFormat(fileName, info);
}

Variant LoadPictureExByVar(const Variant& fileName, Variant& info) {
    const WString name = toText(fileName);
    Ref<PictureInfo> object = automation::libraryObject<PictureInfo>(toObject(info));
    Picture picture = LoadPictureEx(name, object);
    info.assign(object ? Variant(object->asObject()) : Variant(Object()));
    return Variant(Object(std::move(picture)));
}

Picture LoadResPictureByData(const Array<std::uint8_t>& data, Ref<PictureInfo>& info) {
    const WString path = nqGetTempFileName2(u"", u"TMP");
    WriteTempFile(path, data);
    struct Deletion {
        const WString& path;
        ~Deletion() { platform::kernel32.DeleteFileA(toAnsi(path)); }
    };
    const Deletion deletion{path};
    return LoadPictureEx(path, info);
}

WString GetLoadPictureExFilter(const FilterParts& include) {
    WString filter = u"Картинки|*.BMP;*.DIB;*.RLE;*.JPG;*.JPE;*.JPEG;*.GIF;";
    if (include.wmf) filter += u"*.WMF;";
    if (include.emf) filter += u"*.EMF;";
    if (include.icon) filter += u"*.ICO;";
    if (include.cursor) filter += u"*.CUR;";
    filter += u"*.PNG;*.PSD;*.PCX;*.TGA;*.TIF;*.TIFF|Windows bitmap|*.BMP;*.DIB;*.RLE|JPEG|"
              u"*.JPG;*.JPE;*.JPEG|CompuServe GIF|*.GIF|";
    if (include.wmf) filter += u"Windows metafile|*.WMF|";
    if (include.emf) filter += u"Enhanced metafile|*.EMF|";
    if (include.icon) filter += u"Windows icon|*.ICO|";
    if (include.cursor) filter += u"Windows cursor|*.CUR|";
    filter += u"Portable network graphics|*.PNG|Photoshop document|*.PSD|Zsoft Paintbrush|*.PCX|"
              u"Truevision Targa|*.TGA|Tagged image file format|*.TIF;*.TIFF|Все файлы|*.*";
    return filter;
}

WString GetLoadPictureExPattern(const FilterParts& include) {
    WString pattern = u"*.BMP;*.DIB;*.RLE;*.JPG;*.JPE;*.JPEG;*.GIF;";
    if (include.wmf) pattern += u"*.WMF;";
    if (include.emf) pattern += u"*.EMF;";
    if (include.icon) pattern += u"*.ICO;";
    if (include.cursor) pattern += u"*.CUR;";
    pattern += u"*.PNG;*.PSD;*.PCX;*.TGA;*.TIF;*.TIFF";
    return pattern;
}

}  // namespace orvane

#include "pictures/LoadPictureEx.h"

#include <gtest/gtest.h>

#include <map>
#include <string>

namespace orvane {
namespace {

/// The lists of every combination of the metafile flags (first WMF, then EMF) and of the icon flags
/// (first icon, then cursor), as they read in a file dialog.
const std::map<std::string, std::u16string> kMetafilePatterns{
    {"00", u""}, {"10", u"*.WMF;"}, {"01", u"*.EMF;"}, {"11", u"*.WMF;*.EMF;"}};
const std::map<std::string, std::u16string> kIconPatterns{
    {"00", u""}, {"10", u"*.ICO;"}, {"01", u"*.CUR;"}, {"11", u"*.ICO;*.CUR;"}};
const std::map<std::string, std::u16string> kMetafileLines{
    {"00", u""},
    {"10", u"Windows metafile|*.WMF|"},
    {"01", u"Enhanced metafile|*.EMF|"},
    {"11", u"Windows metafile|*.WMF|Enhanced metafile|*.EMF|"}};
const std::map<std::string, std::u16string> kIconLines{
    {"00", u""},
    {"10", u"Windows icon|*.ICO|"},
    {"01", u"Windows cursor|*.CUR|"},
    {"11", u"Windows icon|*.ICO|Windows cursor|*.CUR|"}};

std::u16string expectedPattern(const std::string& metafiles, const std::string& icons) {
    return u"*.BMP;*.DIB;*.RLE;*.JPG;*.JPE;*.JPEG;*.GIF;" + kMetafilePatterns.at(metafiles) +
           kIconPatterns.at(icons) + u"*.PNG;*.PSD;*.PCX;*.TGA;*.TIF;*.TIFF";
}

std::u16string expectedFilter(const std::string& metafiles, const std::string& icons) {
    return u"Картинки|" + expectedPattern(metafiles, icons) +
           u"|Windows bitmap|*.BMP;*.DIB;*.RLE|JPEG|*.JPG;*.JPE;*.JPEG|CompuServe GIF|*.GIF|" +
           kMetafileLines.at(metafiles) + kIconLines.at(icons) +
           u"Portable network graphics|*.PNG|Photoshop document|*.PSD|Zsoft Paintbrush|*.PCX|"
           u"Truevision Targa|*.TGA|Tagged image file format|*.TIF;*.TIFF|Все файлы|*.*";
}

TEST(LoadPictureExFilter, NamesTheFormatsOfEveryCombinationOfFlags) {
    for (const auto& [metafiles, unused] : kMetafilePatterns) {
        for (const auto& [icons, unusedToo] : kIconPatterns) {
            const FilterParts parts{.icon = icons[0] == '1',
                                    .cursor = icons[1] == '1',
                                    .wmf = metafiles[0] == '1',
                                    .emf = metafiles[1] == '1'};
            EXPECT_EQ(GetLoadPictureExFilter(parts).units(), expectedFilter(metafiles, icons));
            EXPECT_EQ(GetLoadPictureExPattern(parts).units(), expectedPattern(metafiles, icons));
        }
    }
}

TEST(LoadPictureExFilter, OfNoFlagsReadsLikeThis) {
    EXPECT_EQ(GetLoadPictureExFilter({}),
              u"Картинки|*.BMP;*.DIB;*.RLE;*.JPG;*.JPE;*.JPEG;*.GIF;*.PNG;*.PSD;*.PCX;*.TGA;*.TIF;"
              u"*.TIFF|Windows bitmap|*.BMP;*.DIB;*.RLE|JPEG|*.JPG;*.JPE;*.JPEG|CompuServe GIF|"
              u"*.GIF|Portable network graphics|*.PNG|Photoshop document|*.PSD|Zsoft Paintbrush|"
              u"*.PCX|Truevision Targa|*.TGA|Tagged image file format|*.TIF;*.TIFF|Все файлы|*.*");
    EXPECT_EQ(GetLoadPictureExPattern({}),
              u"*.BMP;*.DIB;*.RLE;*.JPG;*.JPE;*.JPEG;*.GIF;*.PNG;*.PSD;*.PCX;*.TGA;*.TIF;*.TIFF");
}

TEST(LoadPictureExFilter, OfAllFlagsHasMetafilesBeforeIcons) {
    EXPECT_EQ(GetLoadPictureExPattern({true, true, true, true}),
              u"*.BMP;*.DIB;*.RLE;*.JPG;*.JPE;*.JPEG;*.GIF;*.WMF;*.EMF;*.ICO;*.CUR;*.PNG;*.PSD;"
              u"*.PCX;*.TGA;*.TIF;*.TIFF");
}

}  // namespace
}  // namespace orvane

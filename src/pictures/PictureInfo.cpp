#include "pictures/PictureInfo.h"

#include "frame/automation/describe.h"

namespace orvane {

const automation::EnumTable& enumTable(orvPictureTypeEx) {
    static const automation::EnumTable& table = automation::permanent<automation::EnumTable>([] {
        return automation::EnumTable{"orvPictureTypeEx",
                                     {{"orvPteNothing", 0},
                                      {"orvPteBMP", 1},
                                      {"orvPteJPG", 2},
                                      {"orvPteGIF", 3},
                                      {"orvPteWMF", 4},
                                      {"orvPteEMF", 5},
                                      {"orvPteICO", 6},
                                      {"orvPteCUR", 7},
                                      {"orvPtePNG", 8},
                                      {"orvPtePSD", 9},
                                      {"orvPtePCX", 10},
                                      {"orvPteTGA", 11},
                                      {"orvPteTIFF", 12},
                                      {"orvPteUnknown", 99}}};
    });
    return table;
}

const automation::ClassTable& PictureInfo::table() {
    static const automation::ClassTable& table = automation::classTable([] {
        return automation::ClassBuilder<PictureInfo>(
                   "PictureInfo", automation::Instancing::creatable,
                   {0x83A3985F, 0x5450, 0x4098, {0x94, 0xCD, 0xC5, 0x34, 0xA3, 0xF1, 0x95, 0xD7}},
                   {0xE2C2C4B2, 0x8728, 0x4349, {0xB8, 0x83, 0xAF, 0xBF, 0x28, 0x63, 0xEA, 0xF8}})
            .method<&PictureInfo::Width>("Width")
            .method<&PictureInfo::Height>("Height")
            .method<&PictureInfo::ImageBPP>("ImageBPP")
            .method<&PictureInfo::PictureType>("PictureType")
            .method<&PictureInfo::GetPictureTypeName>("GetPictureTypeName")
            .build();
    });
    return table;
}

PictureInfo::PictureInfo() : AutomationObject(table()) {}

WString PictureInfo::GetPictureTypeName() {
    switch (type_) {
    case orvPictureTypeEx::orvPteNothing:
        return u"Nothing";
    case orvPictureTypeEx::orvPteBMP:
        return u"Windows bitmap";
    case orvPictureTypeEx::orvPteJPG:
        return u"JPEG";
    case orvPictureTypeEx::orvPteGIF:
        return u"CompuServe GIF";
    case orvPictureTypeEx::orvPteWMF:
        return u"Windows metafile";
    case orvPictureTypeEx::orvPteEMF:
        return u"Enhanced metafile";
    case orvPictureTypeEx::orvPteICO:
        return u"Windows icon";
    case orvPictureTypeEx::orvPteCUR:
        return u"Windows cursor";
    case orvPictureTypeEx::orvPtePNG:
        return u"Portable network graphics";
    case orvPictureTypeEx::orvPtePSD:
        return u"Photoshop document";
    case orvPictureTypeEx::orvPtePCX:
        return u"Zsoft Paintbrush";
    case orvPictureTypeEx::orvPteTGA:
        return u"Truevision Targa";
    case orvPictureTypeEx::orvPteTIFF:
        return u"Tagged image file format";
    case orvPictureTypeEx::orvPteUnknown:
        break;
    }
    return u"Unknown";
}

void PictureInfo::ResetInfo() {
    width_ = 0;
    height_ = 0;
    bitsPerPixel_ = 0;
    type_ = orvPictureTypeEx::orvPteNothing;
}

void PictureInfo::SetInfo(const DecodedImage& image, orvPictureTypeEx type) {
    width_ = image.Width;
    height_ = image.Height;
    bitsPerPixel_ = image.BitsPerPixel;
    type_ = type;
}

}  // namespace orvane

#include "checks.h"

namespace orvane::tests::early_bound {
namespace {

constexpr std::int32_t kNotCarriedOut = 445;

struct Arguments {
    IDispatch* object = nullptr;
    IPictureDisp* picture = nullptr;
    Text text = u"text";
    VARIANT value{};
    SAFEARRAY* array = nullptr;
    VARIANT_BOOL found = VARIANT_FALSE;
    LONG number = 0;
};

void checkCommandLine(Library& library, _orvMain& app) {
    Pointer<_CommandLineParser> parser;
    library.check(app.CommandLine(parser.receive()));
    library.check(parser->SetNewCommandLine(Text(u"\"a b\"  c"), VARIANT_TRUE));
    LONG count = -1;
    library.check(parser->get_Count(&count));
    expect(count == 2, "Count of two words");
    Text word;
    library.check(parser->get_Item(0, word.receive()));
    expect(word == u"a b", "Item(0) is the quoted word");
    library.check(parser->get_Item(1, word.receive()));
    expect(word == u"c", "Item(1) is the plain word");
    expect(errorOf(library, parser->get_Item(-2, word.receive())) == 9, "Item(-2) raises 9");
    expect(errorOf(library, parser->get_Item(2, word.receive())) == 9, "Item(2) raises 9");
    expect(parser->get_Count(nullptr) == E_POINTER, "a result without a place is refused");
}

void checkPictures(Library& library, _orvMain& app, Arguments& given) {
    Pointer<_PictureInfo> info;
    Pointer<IPictureDisp> picture;
    library.check(app.LoadPictureEx(Text(u""), info.place(), picture.receive()));
    expect(picture && !info, "an empty name gives an empty picture and no information");
    expect(errorOf(library,
                   app.LoadPictureEx(Text(u"no such file"), info.place(), picture.receive())) == 53,
           "LoadPictureEx raises 53 for a missing file");
    VARIANT name{};
    VARIANT place{};
    VARIANT result{};
    place.vt = VT_DISPATCH;
    name.vt = VT_BSTR;
    Text missing(u"no such file");
    name.bstrVal = missing;
    expect(errorOf(library, app.LoadPictureExByVar(name, &place, &result)) == 53,
           "LoadPictureExByVar raises 53 for a missing file");
    Text filter;
    library.check(app.GetLoadPictureExFilter(VARIANT_FALSE, VARIANT_FALSE, VARIANT_FALSE,
                                             VARIANT_FALSE, filter.receive()));
    expect(filter.view().starts_with(u"Картинки|*.BMP;*.DIB;"), "GetLoadPictureExFilter");
    library.check(app.GetLoadPictureExPattern(VARIANT_TRUE, VARIANT_FALSE, VARIANT_FALSE,
                                              VARIANT_FALSE, filter.receive()));
    expect(filter == u"*.BMP;*.DIB;*.RLE;*.JPG;*.JPE;*.JPEG;*.GIF;*.ICO;*.PNG;*.PSD;*.PCX;*.TGA;"
                     u"*.TIF;*.TIFF",
           "GetLoadPictureExPattern with icons");
    expect(errorOf(library,
                   app.LoadResPictureByData(&given.array, info.place(), picture.receive())) != 0,
           "LoadResPictureByData of no data raises an error");
}

void checkPictureInfo(Library& library) {
    const auto info = library.create<_PictureInfo>();
    LONG number = -1;
    library.check(info->Width(&number));
    expect(number == 0, "Width of a new PictureInfo");
    number = -1;
    library.check(info->Height(&number));
    expect(number == 0, "Height of a new PictureInfo");
    number = -1;
    library.check(info->ImageBPP(&number));
    expect(number == 0, "ImageBPP of a new PictureInfo");
    orvPictureTypeEx type = orvPteUnknown;
    library.check(info->PictureType(&type));
    expect(type == orvPteNothing, "PictureType of a new PictureInfo");
    Text name;
    library.check(info->GetPictureTypeName(name.receive()));
    expect(name == u"Nothing", "GetPictureTypeName of a new PictureInfo");
}

void checkArrays(Library& library, _orvMain& app) {
    SAFEARRAY* none = nullptr;
    SAFEARRAY* texts = nullptr;
    library.check(app.ArrayBSTR(&none, &texts));
    expect(texts == nullptr, "ArrayBSTR of no arguments is unallocated");
    SAFEARRAY* longs = nullptr;
    library.check(app.ArrayLong(&none, &longs));
    expect(longs == nullptr, "ArrayLong of no arguments is unallocated");
    LONG index = -1;
    VARIANT_BOOL found = VARIANT_TRUE;
    expect(errorOf(library,
                   app.InArray(&none, longValue(1), leftOut(), leftOut(), &found, &index)) == 9,
           "InArray raises 9 for an unallocated array");
    expect(found == VARIANT_FALSE, "InArray clears its flag first");
    library.check(app.InArray(&none, longValue(1), longValue(2), longValue(1), &found, &index));
    expect(index == 0, "InArray of an empty range finds nothing");
    library.check(app.IsInArray(&none, longValue(1), longValue(2), longValue(1), &found));
    expect(found == VARIANT_FALSE, "IsInArray of an empty range finds nothing");
}

void checkCollections(Library& library, _orvMain& app) {
    IDispatch* nothing = nullptr;
    LONG index = -1;
    VARIANT_BOOL found = VARIANT_TRUE;
    expect(errorOf(library, app.InCollection(&nothing, longValue(1), leftOut(), leftOut(), &found,
                                             &index)) == 91,
           "InCollection raises 91 for Nothing");
    expect(found == VARIANT_FALSE, "InCollection clears its flag first");
    library.check(
        app.InCollection(&nothing, longValue(1), longValue(2), longValue(1), &found, &index));
    expect(index == 0, "InCollection of an empty range finds nothing");
    expect(errorOf(library,
                   app.IsInCollection(&nothing, longValue(1), leftOut(), leftOut(), &found)) == 91,
           "IsInCollection raises 91 for Nothing");
    Text joined(u"former");
    library.check(app.JoinCollection(&nothing, Text(u", "), VARIANT_FALSE, joined.receive()));
    expect(joined == u"", "JoinCollection of Nothing is empty while errors are ignored");
    expect(errorOf(library,
                   app.JoinCollection(&nothing, Text(u", "), VARIANT_TRUE, joined.receive())) == 91,
           "JoinCollection raises 91 for Nothing on request");
}

void checkUnbuilt(Library& library, _orvMain& app, Arguments& a) {
    LONG number = 0;
    VARIANT_BOOL flag = VARIANT_FALSE;
    const auto refuses = [&](HRESULT status, const char* member) {
        expect(errorOf(library, status) == kNotCarriedOut, member);
    };
    refuses(app.ShowMSAboutBox(a.object), "ShowMSAboutBox");
    refuses(app.ShowAboutBox(a.object, a.object, a.text, a.picture, a.text), "ShowAboutBox");
    refuses(app.ShowAboutBox2(a.picture, a.picture, a.object, a.text, a.picture, a.text),
            "ShowAboutBox2");
    refuses(app.ShowAboutBoxEx(a.text, a.picture, a.picture, 1, 0, 0, a.text, a.text, a.text,
                               a.text, a.picture, a.text),
            "ShowAboutBoxEx");
    refuses(app.AddTextBoxInsertHook(a.object, &flag), "AddTextBoxInsertHook");
    refuses(app.RemoveTextBoxInsertHook(a.object, &flag), "RemoveTextBoxInsertHook");
    refuses(app.ClearTextBoxInsertHooks(), "ClearTextBoxInsertHooks");
    refuses(app.ShowModalForm(a.object, a.object), "ShowModalForm");
    refuses(app.GetSelectedOptionButtonIndex(a.object, &number), "GetSelectedOptionButtonIndex");
    refuses(app.SetSelectedOptionButtonIndex(a.object, 0), "SetSelectedOptionButtonIndex");
    refuses(app.PressButton(a.object, &flag), "PressButton");
    refuses(app.FixFonts(a.object), "FixFonts");
    refuses(app.FixCBCursors(a.object), "FixCBCursors");
    refuses(app.AddAutoComplete(a.object, AddAutoCompleteFlags{}, &flag), "AddAutoComplete");
}

}  // namespace

void checkMain(Library& library) {
    auto& app = library.global<_orvMain>();
    Arguments given;
    checkCommandLine(library, app);
    checkPictures(library, app, given);
    checkPictureInfo(library);
    checkArrays(library, app);
    checkCollections(library, app);
    checkUnbuilt(library, app, given);
}

}  // namespace orvane::tests::early_bound

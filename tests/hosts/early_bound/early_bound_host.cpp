// A host as its author writes it: compiled against the printed header and the client alone, early
// bound, the same source on both platforms. It calls every slot of every class and prints what
// went wrong; the status is 0 when nothing did.
//
//   early_bound_host LIBRARY

#include "orvane/OrvBase0301.h"
#include "orvane/host.h"

#include <iostream>
#include <random>
#include <string>

namespace {

using orvane::host::Error;
using orvane::host::Library;
using orvane::host::Pointer;
using orvane::host::Text;

constexpr std::int32_t kNotCarriedOut = 445;

int failures = 0;
int checks = 0;

void expect(bool condition, const char* what) {
    ++checks;
    if (condition) return;
    ++failures;
    std::cerr << "failed: " << what << "\n";
}

/// The number of the error that a call ends with; 0 when it succeeds.
std::int32_t errorOf(Library& library, HRESULT status) {
    try {
        library.check(status);
    } catch (const Error& failure) {
        return failure.number();
    }
    return 0;
}

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

void checkAlone(Library& library) {
    std::u16string unique = u"orvane host ";
    for (const char digit : std::to_string(std::random_device()()))
        unique += static_cast<char16_t>(digit);
    const Text name(unique);
    const auto first = library.create<_orvAlone>();
    const auto second = library.create<_orvAlone>();
    const auto answers = [&](HRESULT (STDMETHODCALLTYPE _orvAlone::*member)(BSTR, VARIANT_BOOL*),
                             _orvAlone& object) {
        VARIANT_BOOL alone = 1;
        library.check((object.*member)(name, &alone));
        return alone;
    };
    expect(answers(&_orvAlone::IsAlone, *first) == VARIANT_TRUE, "IsAlone of the first");
    expect(answers(&_orvAlone::IsAlone, *second) == VARIANT_FALSE, "IsAlone of the second");
    expect(answers(&_orvAlone::IsAloneOnDesktop, *first) == VARIANT_TRUE, "IsAloneOnDesktop");
    expect(answers(&_orvAlone::IsAloneOnDesktop, *second) == VARIANT_FALSE,
           "IsAloneOnDesktop of the second");
    expect(answers(&_orvAlone::IsAloneAtUser, *first) == VARIANT_TRUE, "IsAloneAtUser");
}

/// An array of a host's own with three elements, from index -1 on, and a Variant that stands for
/// it.
class ThreeElements {
public:
    ThreeElements(Library& library, VARTYPE type) : library_(library) {
        SAFEARRAYBOUND bound{3, -1};
#ifdef _WIN32
        array = SafeArrayCreate(type, 1, &bound);
#else
        array = library.runtime()->CreateArray(type, 1, &bound);
#endif
        value.vt = static_cast<VARTYPE>(VT_ARRAY | VT_BYREF | type);
        value.pparray = &array;
    }
    ~ThreeElements() {
#ifdef _WIN32
        SafeArrayDestroy(array);
#else
        library_.runtime()->DestroyArray(array);
#endif
    }
    ThreeElements(const ThreeElements&) = delete;
    ThreeElements& operator=(const ThreeElements&) = delete;

    template <class T>
    T& at(std::size_t place) const {
        return static_cast<T*>(array->pvData)[place];
    }

    SAFEARRAY* array = nullptr;
    VARIANT value{};

private:
    [[maybe_unused]] Library& library_;
};

template <class Sort>
void checkSortOfLongs(Library& library, Sort sort, const char* member) {
    ThreeElements numbers(library, VT_I4);
    numbers.at<LONG>(0) = 3;
    numbers.at<LONG>(1) = -1;
    numbers.at<LONG>(2) = 2;
    library.check(sort(numbers));
    expect(numbers.at<LONG>(0) == -1 && numbers.at<LONG>(1) == 2 && numbers.at<LONG>(2) == 3,
           member);
}

template <class Sort>
void checkSortOfTexts(Library& library, Sort sort, const char* member) {
    ThreeElements texts(library, VT_BSTR);
    std::size_t place = 0;
    for (const char16_t* each : {u"b", u"a", u"Z"})
        std::swap(texts.at<BSTR>(place++), *Text(each).place());
    library.check(sort(texts));
    expect(orvane::host::viewOf(texts.at<BSTR>(0)) == u"Z" &&
               orvane::host::viewOf(texts.at<BSTR>(1)) == u"a" &&
               orvane::host::viewOf(texts.at<BSTR>(2)) == u"b",
           member);
}

void checkSorts(Library& library) {
    auto& sorter = library.global<_orvSort>();
    using Three = ThreeElements;
    const auto longs = [&](auto sort, const char* member) {
        checkSortOfLongs(library, sort, member);
    };
    const auto texts = [&](auto sort, const char* member) {
        checkSortOfTexts(library, sort, member);
    };
    longs([&](Three& a) { return sorter.InsertionSort(&a.value); }, "InsertionSort");
    longs([&](Three& a) { return sorter.InsertionSort_ByLong(&a.array); }, "InsertionSort_ByLong");
    longs([&](Three& a) { return sorter.QuickSort(&a.value); }, "QuickSort");
    longs([&](Three& a) { return sorter.QuickSort_ByLong(&a.array); }, "QuickSort_ByLong");
    texts([&](Three& a) { return sorter.InsertionSort_ByString(&a.array); },
          "InsertionSort_ByString");
    texts([&](Three& a) { return sorter.QuickSort_ByString(&a.array); }, "QuickSort_ByString");
    texts([&](Three& a) { return sorter.QuickSort(&a.value); }, "QuickSort of texts");
    const auto refusesNothing = [&](HRESULT status, const char* member) {
        expect(errorOf(library, status) == 91, member);
    };
    refusesNothing(sorter.InsertionSortC(nullptr), "InsertionSortC");
    refusesNothing(sorter.InsertionSortC_ByString(nullptr), "InsertionSortC_ByString");
    refusesNothing(sorter.InsertionSortC_ByLong(nullptr), "InsertionSortC_ByLong");
    refusesNothing(sorter.QuickSortC(nullptr), "QuickSortC");
    refusesNothing(sorter.QuickSortC_ByString(nullptr), "QuickSortC_ByString");
    refusesNothing(sorter.QuickSortC_ByLong(nullptr), "QuickSortC_ByLong");
}

/// An argument that is left out.
VARIANT leftOut() {
    VARIANT argument{};
    argument.vt = VT_ERROR;
    argument.scode = DISP_E_PARAMNOTFOUND;
    return argument;
}

VARIANT longValue(LONG value) {
    VARIANT argument{};
    argument.vt = VT_I4;
    argument.lVal = value;
    return argument;
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

void checkStringBuffer(Library& library) {
    const auto buffer = library.create<_orvStringBuffer>();
    expect(errorOf(library, buffer->AddText(Text(u"a"))) == 5, "AddText before Alloc raises 5");
    expect(errorOf(library, buffer->Trim()) == 5, "Trim before Alloc raises 5");
    library.check(buffer->Alloc(5, longValue(65)));
    library.check(buffer->AddText(Text(u"bc")));
    Text text;
    library.check(buffer->get_Value(text.receive()));
    expect(text == u"bcAAA", "Value with its padding");
    LONG size = -1;
    library.check(buffer->get_Size(&size));
    expect(size == 5, "Size with its padding");
    library.check(buffer->Trim());
    library.check(buffer->get_Value(text.receive()));
    expect(text == u"bc", "Value after Trim");
    library.check(buffer->put_Value(Text(u"new")));
    library.check(buffer->get_Size(&size));
    expect(size == 3, "Size of a new value");
}

void checkStopwatches(Library& library) {
    const auto watch = library.create<_orvBenchMark>();
    LONG milliseconds = -1;
    library.check(watch->GetTickDifferenceMS(&milliseconds));
    expect(milliseconds == 0, "GetTickDifferenceMS of a new orvBenchMark");
    Text text;
    library.check(watch->toString(4, text.receive()));
    expect(text == u"0 ms. / 4 (0 ms.)", "toString of a new orvBenchMark");
    library.check(watch->FirstMark());
    library.check(watch->LaskMark());
    library.check(watch->GetTickDifferenceMS(&milliseconds));
    expect(milliseconds >= 0, "GetTickDifferenceMS after both marks");

    const auto precise = library.create<_orvBenchMarkHP>();
    double number = -1;
    library.check(precise->GetTickDifference(&number));
    expect(number == 0, "GetTickDifference of a new orvBenchMarkHP");
    library.check(precise->toString(0, text.receive()));
    expect(text == u"0 ms.", "toString of a new orvBenchMarkHP");
    library.check(precise->FirstMark());
    library.check(precise->LaskMark());
    library.check(precise->GetTickDifferenceMS(&number));
    expect(number >= 0, "orvBenchMarkHP.GetTickDifferenceMS after both marks");
    library.check(precise->GetTickDifferenceSec(&number));
    expect(number >= 0, "GetTickDifferenceSec after both marks");
    double perSecond = 0;
    library.check(precise->GetTickFrequencyPerSec(&perSecond));
    library.check(precise->GetTickFrequencyPerMS(&number));
    expect(perSecond > 0 && number == perSecond / 1000, "frequencies of orvBenchMarkHP");
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

int main(int count, char** arguments) {
    try {
        Library library(count > 1 ? arguments[1] : "");
        auto& app = library.global<_orvMain>();
        Arguments given;
        checkCommandLine(library, app);
        checkPictures(library, app, given);
        checkPictureInfo(library);
        checkSorts(library);
        checkAlone(library);
        checkArrays(library, app);
        checkCollections(library, app);
        checkStringBuffer(library);
        checkStopwatches(library);
        checkUnbuilt(library, app, given);
        library.endThread();
        expect(library.canUnload(), "nothing is left alive");
    } catch (const Error& failure) {
        std::cerr << "run-time error " << failure.number() << "\n";
        return 1;
    } catch (const std::exception& failure) {
        std::cerr << failure.what() << "\n";
        return 1;
    }
    std::cout << checks << " checks, " << failures << " failed\n";
    return failures == 0 ? 0 : 1;
}

#include "checks.h"

#include <random>
#include <string>
#include <utility>

namespace orvane::tests::early_bound {
namespace {

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

}  // namespace

void checkUtilities(Library& library) {
    checkAlone(library);
    checkSorts(library);
    checkStringBuffer(library);
    checkStopwatches(library);
}

}  // namespace orvane::tests::early_bound

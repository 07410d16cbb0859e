#include <orvane/automation.h>

#include <gtest/gtest.h>

#include <array>
#include <cstdlib>
#include <limits>
#include <string>
#include <thread>

namespace {

/// An object that counts its references.
class Counted final : public IErrorInfo {
public:
    ULONG count = 1;

    HRESULT QueryInterface(REFIID, void** object) override {
        *object = nullptr;
        return E_NOINTERFACE;
    }
    ULONG AddRef() override { return ++count; }
    ULONG Release() override { return --count; }
    HRESULT GetGUID(GUID*) override { return E_NOTIMPL; }
    HRESULT GetSource(BSTR*) override { return E_NOTIMPL; }
    HRESULT GetDescription(BSTR*) override { return E_NOTIMPL; }
    HRESULT GetHelpFile(BSTR*) override { return E_NOTIMPL; }
    HRESULT GetHelpContext(DWORD*) override { return E_NOTIMPL; }
};

VARIANT ofType(VARTYPE type) {
    VARIANT value;
    VariantInit(&value);
    value.vt = type;
    return value;
}

SAFEARRAY* arrayOf(VARTYPE type, ULONG count, LONG lower = 0) {
    SAFEARRAYBOUND bound{count, lower};
    return SafeArrayCreate(type, 1, &bound);
}

template <class Element>
Element* dataOf(SAFEARRAY* array) {
    return static_cast<Element*>(array->pvData);
}

TEST(Bstr, HasItsLengthBeforeItAndANullBehind) {
    const BSTR text = SysAllocStringLen(u"a\0b", 3);
    EXPECT_EQ(SysStringLen(text), 3u);
    EXPECT_EQ(SysStringByteLen(text), 6u);
    EXPECT_EQ(std::u16string(text, 4), std::u16string(u"a\0b\0", 4));
    void* units = text;
    std::uint32_t count = 0;
    std::memcpy(&count, static_cast<char*>(units) - 4, 4);
    EXPECT_EQ(count, 6u);
    // The documented layout: a host in any language may give the block back itself.
    std::free(static_cast<char*>(units) - 4);
}

TEST(Bstr, MayHoldAnOddCountOfBytes) {
    const BSTR text = SysAllocStringByteLen("abc", 3);
    EXPECT_EQ(SysStringByteLen(text), 3u);
    EXPECT_EQ(SysStringLen(text), 1u);
    EXPECT_EQ(std::memcmp(text, "abc\0\0", 5), 0);
    SysFreeString(text);
}

TEST(Bstr, WithoutATextIsZeroes) {
    const BSTR text = SysAllocStringLen(nullptr, 2);
    EXPECT_EQ(std::u16string(text, 2), std::u16string(2, u'\0'));
    SysFreeString(text);
    EXPECT_EQ(SysAllocString(nullptr), nullptr);
    EXPECT_EQ(SysStringLen(nullptr), 0u);
    SysFreeString(nullptr);
}

TEST(Bstr, TooLongATextIsRefused) {
    EXPECT_EQ(SysAllocStringLen(nullptr, std::numeric_limits<UINT>::max()), nullptr);
    EXPECT_EQ(SysAllocStringByteLen(nullptr, std::numeric_limits<UINT>::max()), nullptr);
}

TEST(SafeArrays, KeepTheirBoundsLastOneFirst) {
    SAFEARRAYBOUND bounds[] = {{2, 1}, {3, -5}};
    SAFEARRAY* array = SafeArrayCreate(VT_I4, 2, bounds);
    ASSERT_NE(array, nullptr);
    EXPECT_EQ(SafeArrayGetDim(array), 2u);
    EXPECT_EQ(array->rgsabound[0].cElements, 3u);
    EXPECT_EQ(array->rgsabound[1].cElements, 2u);
    LONG bound = 0;
    EXPECT_EQ(SafeArrayGetLBound(array, 1, &bound), S_OK);
    EXPECT_EQ(bound, 1);
    EXPECT_EQ(SafeArrayGetUBound(array, 1, &bound), S_OK);
    EXPECT_EQ(bound, 2);
    EXPECT_EQ(SafeArrayGetLBound(array, 2, &bound), S_OK);
    EXPECT_EQ(bound, -5);
    EXPECT_EQ(SafeArrayGetUBound(array, 2, &bound), S_OK);
    EXPECT_EQ(bound, -3);
    EXPECT_EQ(SafeArrayGetUBound(array, 3, &bound), DISP_E_BADINDEX);
    EXPECT_EQ(SafeArrayGetLBound(array, 0, &bound), DISP_E_BADINDEX);
    EXPECT_EQ(SafeArrayDestroy(array), S_OK);
}

TEST(SafeArrays, HaveTheDocumentedBlocks) {
    SAFEARRAY* array = arrayOf(VT_UI1, 5);
    VARTYPE type = VT_EMPTY;
    EXPECT_EQ(SafeArrayGetVartype(array, &type), S_OK);
    EXPECT_EQ(type, VT_UI1);
    void* place = array;
    std::uint32_t stored = 0;
    std::memcpy(&stored, static_cast<char*>(place) - 4, 4);
    EXPECT_EQ(stored, VT_UI1);
    std::free(array->pvData);
    std::free(static_cast<char*>(place) - 16);
}

TEST(SafeArrays, RefuseWhatCannotBe) {
    EXPECT_EQ(arrayOf(VT_EMPTY, 1), nullptr);
    EXPECT_EQ(arrayOf(VT_UI1 | VT_BYREF, 1), nullptr);
    EXPECT_EQ(arrayOf(VT_UI1, 0x80000000), nullptr);
    EXPECT_EQ(arrayOf(VT_VARIANT, 0x7FFFFFFF), nullptr);
    EXPECT_EQ(arrayOf(VT_UI1, 2, std::numeric_limits<LONG>::max()), nullptr);
    EXPECT_EQ(SafeArrayCreate(VT_I4, 0, nullptr), nullptr);
    SAFEARRAYBOUND many[] = {{0x10000, 0}, {0x10000, 0}, {0x10000, 0}, {0x10000, 0}};
    EXPECT_EQ(SafeArrayCreate(VT_I4, 4, many), nullptr);
    // 2^61 elements of 8 bytes and 2^60 of 16: their bytes are 2^64, which 64 bits take for none.
    SAFEARRAYBOUND wrapping[] = {{0x80000000, 0}, {0x40000000, 0}};
    EXPECT_EQ(SafeArrayCreate(VT_R8, 2, wrapping), nullptr);
    EXPECT_EQ(SafeArrayCreate(VT_BSTR, 2, wrapping), nullptr);
    wrapping[0].cElements = 0x40000000;
    EXPECT_EQ(SafeArrayCreate(VT_DECIMAL, 2, wrapping), nullptr);
}

TEST(SafeArrays, MayBeEmpty) {
    SAFEARRAY* array = arrayOf(VT_BSTR, 0, 3);
    ASSERT_NE(array, nullptr);
    LONG bound = 0;
    EXPECT_EQ(SafeArrayGetUBound(array, 1, &bound), S_OK);
    EXPECT_EQ(bound, 2);
    SAFEARRAY* copy = nullptr;
    EXPECT_EQ(SafeArrayCopy(array, &copy), S_OK);
    EXPECT_EQ(SafeArrayDestroy(copy), S_OK);
    EXPECT_EQ(SafeArrayDestroy(array), S_OK);
    EXPECT_EQ(SafeArrayDestroy(nullptr), S_OK);
}

TEST(SafeArrays, ALockedOneStays) {
    SAFEARRAY* array = arrayOf(VT_I2, 4);
    void* data = nullptr;
    EXPECT_EQ(SafeArrayAccessData(array, &data), S_OK);
    EXPECT_EQ(data, array->pvData);
    EXPECT_EQ(SafeArrayDestroy(array), DISP_E_ARRAYISLOCKED);
    VARIANT value = ofType(VT_ARRAY | VT_I2);
    value.parray = array;
    EXPECT_EQ(VariantClear(&value), DISP_E_ARRAYISLOCKED);
    EXPECT_EQ(value.parray, array);
    EXPECT_EQ(SafeArrayUnaccessData(array), S_OK);
    EXPECT_EQ(SafeArrayUnaccessData(array), E_UNEXPECTED);
    EXPECT_EQ(VariantClear(&value), S_OK);
    EXPECT_EQ(value.vt, VT_EMPTY);
}

TEST(SafeArrays, TextsAreCopiedAndFreed) {
    SAFEARRAY* array = arrayOf(VT_BSTR, 2);
    dataOf<BSTR>(array)[1] = SysAllocString(u"text");
    SAFEARRAY* copy = nullptr;
    EXPECT_EQ(SafeArrayCopy(array, &copy), S_OK);
    EXPECT_EQ(SafeArrayDestroy(array), S_OK);
    EXPECT_EQ(dataOf<BSTR>(copy)[0], nullptr);
    EXPECT_EQ(std::u16string(dataOf<BSTR>(copy)[1]), u"text");
    EXPECT_EQ(SafeArrayDestroy(copy), S_OK);
}

TEST(SafeArrays, ObjectsAndValuesAreHeld) {
    Counted object;
    SAFEARRAY* array = arrayOf(VT_VARIANT, 2);
    dataOf<VARIANT>(array)[0] = ofType(VT_UNKNOWN);
    dataOf<VARIANT>(array)[0].punkVal = &object;
    object.AddRef();
    SAFEARRAY* inner = arrayOf(VT_UNKNOWN, 1);
    dataOf<IUnknown*>(inner)[0] = &object;
    object.AddRef();
    dataOf<VARIANT>(array)[1] = ofType(VT_ARRAY | VT_UNKNOWN);
    dataOf<VARIANT>(array)[1].parray = inner;
    SAFEARRAY* copy = nullptr;
    EXPECT_EQ(SafeArrayCopy(array, &copy), S_OK);
    EXPECT_EQ(object.count, 5u);
    EXPECT_EQ(SafeArrayDestroy(array), S_OK);
    EXPECT_EQ(object.count, 3u);
    EXPECT_EQ(SafeArrayDestroy(copy), S_OK);
    EXPECT_EQ(object.count, 1u);
}

TEST(SafeArrays, AHostsOwnVariableIsOnlyEmptied) {
    BSTR texts[2] = {SysAllocString(u"a"), nullptr};
    SAFEARRAY array{};
    array.cDims = 1;
    array.fFeatures = FADF_STATIC | FADF_BSTR;
    array.cbElements = sizeof(BSTR);
    array.pvData = texts;
    array.rgsabound[0] = {2, 0};
    VARTYPE type = VT_EMPTY;
    EXPECT_EQ(SafeArrayGetVartype(&array, &type), S_OK);
    EXPECT_EQ(type, VT_BSTR);
    EXPECT_EQ(SafeArrayDestroy(&array), S_OK);
    EXPECT_EQ(texts[0], nullptr);
}

TEST(Variants, CopiesAreDeep) {
    VARIANT source = ofType(VT_BSTR);
    source.bstrVal = SysAllocStringLen(u"a\0b", 3);
    VARIANT copy = ofType(VT_EMPTY);
    EXPECT_EQ(VariantCopy(&copy, &source), S_OK);
    EXPECT_NE(copy.bstrVal, source.bstrVal);
    EXPECT_EQ(VariantClear(&source), S_OK);
    EXPECT_EQ(SysStringLen(copy.bstrVal), 3u);
    EXPECT_EQ(VariantCopy(&copy, &copy), S_OK);
    EXPECT_EQ(SysStringLen(copy.bstrVal), 3u);
    // What the target held is freed; the sanitizer would tell.
    EXPECT_EQ(VariantCopy(&copy, &source), S_OK);
    EXPECT_EQ(copy.vt, VT_EMPTY);
}

TEST(Variants, AReferenceOwnsNothing) {
    const BSTR owned = SysAllocString(u"kept");
    BSTR text = owned;
    VARIANT value = ofType(VT_BYREF | VT_BSTR);
    value.pbstrVal = &text;
    VARIANT copy = ofType(VT_EMPTY);
    EXPECT_EQ(VariantCopy(&copy, &value), S_OK);
    EXPECT_EQ(copy.pbstrVal, &text);
    EXPECT_EQ(VariantClear(&copy), S_OK);
    EXPECT_EQ(VariantCopyInd(&copy, &value), S_OK);
    EXPECT_EQ(copy.vt, VT_BSTR);
    EXPECT_NE(copy.bstrVal, text);
    EXPECT_EQ(VariantClear(&copy), S_OK);
    EXPECT_EQ(VariantClear(&value), S_OK);
    EXPECT_EQ(std::u16string(text), u"kept");
    SysFreeString(owned);
}

TEST(Variants, ReferencesAreFollowedOnce) {
    SHORT number = -7;
    VARIANT inner = ofType(VT_BYREF | VT_I2);
    inner.piVal = &number;
    VARIANT outer = ofType(VT_BYREF | VT_VARIANT);
    outer.pvarVal = &inner;
    VARIANT copy = ofType(VT_EMPTY);
    EXPECT_EQ(VariantCopyInd(&copy, &outer), S_OK);
    EXPECT_EQ(copy.vt, VT_I2);
    EXPECT_EQ(copy.iVal, -7);
    VARIANT third = ofType(VT_BYREF | VT_VARIANT);
    third.pvarVal = &outer;
    EXPECT_EQ(VariantCopyInd(&copy, &third), E_INVALIDARG);
    EXPECT_EQ(VariantCopyInd(&outer, &outer), S_OK);
    EXPECT_EQ(outer.vt, VT_I2);
    inner.piVal = nullptr;
    EXPECT_EQ(VariantCopyInd(&copy, &inner), E_INVALIDARG);
    EXPECT_EQ(copy.iVal, -7);
}

TEST(Variants, AnArrayByReferenceIsCopied) {
    SAFEARRAY* array = arrayOf(VT_I4, 2);
    dataOf<LONG>(array)[1] = 42;
    VARIANT value = ofType(VT_BYREF | VT_ARRAY | VT_I4);
    value.pparray = &array;
    VARIANT copy = ofType(VT_EMPTY);
    EXPECT_EQ(VariantCopyInd(&copy, &value), S_OK);
    EXPECT_EQ(copy.vt, VT_ARRAY | VT_I4);
    EXPECT_NE(copy.parray, array);
    EXPECT_EQ(dataOf<LONG>(copy.parray)[1], 42);
    EXPECT_EQ(VariantClear(&copy), S_OK);
    EXPECT_EQ(SafeArrayDestroy(array), S_OK);
}

TEST(Variants, ObjectsAreCounted) {
    Counted object;
    VARIANT value = ofType(VT_UNKNOWN);
    value.punkVal = &object;
    VARIANT copy = ofType(VT_EMPTY);
    EXPECT_EQ(VariantCopy(&copy, &value), S_OK);
    EXPECT_EQ(object.count, 2u);
    EXPECT_EQ(VariantClear(&copy), S_OK);
    EXPECT_EQ(object.count, 1u);
}

TEST(Variants, UnknownTypesAreRefused) {
    for (const int type : {15, 24, 100, 12, 0x4000, 0x2001, 0x8003, 0x1003}) {
        VARIANT value = ofType(static_cast<VARTYPE>(type));
        VARIANT copy = ofType(VT_EMPTY);
        EXPECT_EQ(VariantClear(&value), DISP_E_BADVARTYPE) << type;
        EXPECT_EQ(VariantCopy(&copy, &value), DISP_E_BADVARTYPE) << type;
    }
}

TEST(ErrorInformation, GoesToTheOneWhoAsks) {
    Counted object;
    EXPECT_EQ(SetErrorInfo(0, &object), S_OK);
    EXPECT_EQ(object.count, 2u);
    std::thread([] {
        IErrorInfo* other = nullptr;
        EXPECT_EQ(GetErrorInfo(0, &other), S_FALSE);
        EXPECT_EQ(other, nullptr);
    }).join();
    IErrorInfo* found = nullptr;
    EXPECT_EQ(GetErrorInfo(0, &found), S_OK);
    EXPECT_EQ(found, &object);
    EXPECT_EQ(object.count, 2u);
    EXPECT_EQ(found->Release(), 1u);
    EXPECT_EQ(GetErrorInfo(0, &found), S_FALSE);
    EXPECT_EQ(SetErrorInfo(1, nullptr), E_INVALIDARG);
}

TEST(ErrorInformation, IsReplacedAndReleasedWithItsThread) {
    Counted first;
    Counted second;
    std::thread([&] {
        EXPECT_EQ(SetErrorInfo(0, &first), S_OK);
        EXPECT_EQ(SetErrorInfo(0, &second), S_OK);
        EXPECT_EQ(first.count, 1u);
        EXPECT_EQ(second.count, 2u);
    }).join();
    EXPECT_EQ(second.count, 1u);
}

}  // namespace

#include "host.h"

#include "support/raised_error.h"

#include <gtest/gtest.h>

#include <limits>

namespace orvane::automation {
namespace {

using test::HostVariant;
using test::raisedBy;

Variant throughVariant(const Variant& value) {
    return HostVariant(value).content();
}

TEST(Marshal, ANullTextStaysNullAndAnEmptyOneEmpty) {
    EXPECT_TRUE(throughVariant(Variant(WString())).as<WString>()->isNull());
    EXPECT_FALSE(throughVariant(Variant(u"")).as<WString>()->isNull());
}

TEST(Marshal, ATextKeepsNulUnitsAndLoneSurrogates) {
    const WString text(std::u16string(u"a\0b\xD800z", 5));
    EXPECT_EQ(*throughVariant(Variant(text)).as<WString>(), text);
}

TEST(Marshal, ForeignIntegersBecomeTheNarrowestTypeThatHoldsThem) {
    const auto tagOf = [](VARTYPE type, std::int64_t bits) {
        VARIANT value{};
        value.vt = type;
        value.llVal = bits;
        return fromVariant(value).type();
    };
    EXPECT_EQ(tagOf(VT_I1, 0xFB), VarType::Integer);
    EXPECT_EQ(tagOf(VT_UI2, 40000), VarType::Long);
    EXPECT_EQ(tagOf(VT_UI4, 0xFFFFFFFF), VarType::Double);
    EXPECT_EQ(tagOf(VT_I8, std::numeric_limits<std::int64_t>::min()), VarType::Double);
    EXPECT_EQ(tagOf(VT_I8, -5), VarType::Integer);
    EXPECT_EQ(tagOf(VT_INT, 70000), VarType::Long);
}

TEST(Marshal, ATagOutsideTheValueModelIsATypeMismatch) {
    VARIANT value{};
    value.vt = VT_LPWSTR;
    EXPECT_THROW(fromVariant(value), RuntimeError);
    value.vt = VT_ARRAY | VT_LPWSTR;
    SAFEARRAYBOUND bound{1, 0};
    value.parray = SafeArrayCreate(VT_I4, 1, &bound);
    EXPECT_THROW(fromVariant(value), RuntimeError);
    SafeArrayDestroy(value.parray);
}

template <class T>
void expectArrayRoundTrip(std::vector<T> elements) {
    auto array = Array<T>::withBounds({{-2, static_cast<std::uint32_t>(elements.size())}});
    std::ranges::copy(elements, array.elements().begin());
    const Variant back = throughVariant(Variant(array));
    ASSERT_NE(back.asArray<T>(), nullptr);
    EXPECT_EQ(back.asArray<T>()->lowerBound(), -2);
    for (std::size_t i = 0; i < elements.size(); ++i) {
        EXPECT_EQ(back.asArray<T>()->elements()[i], elements[i]);
    }
}

TEST(Marshal, ArraysOfEveryElementTypeKeepBoundsAndElements) {
    expectArrayRoundTrip<std::uint8_t>({1, 255});
    expectArrayRoundTrip<std::int16_t>({-1, 32767});
    expectArrayRoundTrip<std::int32_t>({-1, 1 << 30});
    expectArrayRoundTrip<float>({0.5F, -2});
    expectArrayRoundTrip<double>({0.1, 1e300});
    expectArrayRoundTrip<Currency>({{1}, {-1}});
    expectArrayRoundTrip<Date>({{1.5}, {0}});
    expectArrayRoundTrip<ErrorValue>({{5}, kMissing});
    expectArrayRoundTrip<WString>({u"", u"Ж"});
}

TEST(Marshal, ArraysOfBooleansVariantsAndObjectsKeepTheirElements) {
    const Ref<test::Sample> sample = make<test::Sample>();
    const Variant flags = throughVariant(Variant(Array<bool>::of({true, false})));
    EXPECT_TRUE(flags.asArray<bool>()->at(0));
    EXPECT_FALSE(flags.asArray<bool>()->at(1));
    const Variant mixed = throughVariant(
        Variant(Array<Variant>::of({Variant(u"x"), Variant::null(), Variant(std::int32_t{7})})));
    EXPECT_EQ(mixed.asArray<Variant>()->at(1).type(), VarType::Null);
    EXPECT_EQ(*mixed.asArray<Variant>()->at(2).as<std::int32_t>(), 7);
    const Variant objects =
        throughVariant(Variant(Array<Object>::of({sample->asObject(), Object()})));
    EXPECT_TRUE(objects.asArray<Object>()->at(0).is(sample->asObject()));
    EXPECT_TRUE(objects.asArray<Object>()->at(1).isNothing());
}

TEST(Marshal, SeveralDimensionsKeepTheirOrder) {
    auto array = Array<std::int32_t>::withBounds({{1, 2}, {10, 3}});
    const Variant back = throughVariant(Variant(array));
    EXPECT_EQ(back.array()->lowerBound(1), 1);
    EXPECT_EQ(back.array()->upperBound(1), 2);
    EXPECT_EQ(back.array()->lowerBound(2), 10);
    EXPECT_EQ(back.array()->upperBound(2), 12);
}

TEST(Marshal, AnUnallocatedArrayCrossesAsANullArray) {
    const HostVariant value{Variant(Array<std::int32_t>())};
    EXPECT_EQ(value.value.vt, VT_ARRAY | VT_I4);
    EXPECT_EQ(value.value.parray, nullptr);
    EXPECT_FALSE(value.content().array()->isAllocated());
}

TEST(Marshal, AnEmptyArrayKeepsItsUpperBound) {
    const Variant back = throughVariant(Variant(Array<WString>::empty()));
    EXPECT_EQ(back.array()->upperBound(), -1);
}

TEST(Marshal, StoringReplacesAndFreesWhatWasThere) {
    HostVariant place{Variant(u"before")};
    storeVariant(place.value, Variant(Array<WString>::of({u"after"})));
    EXPECT_EQ(place.value.vt, VT_ARRAY | VT_BSTR);
    storeVariant(place.value, Variant(std::int32_t{1}));
    EXPECT_EQ(place.value.vt, VT_I4);
}

TEST(Marshal, APlaceWhoseArrayIsLockedKeepsIt) {
    HostVariant place{Variant(Array<std::int32_t>::of({1}))};
    SAFEARRAY* const array = place.value.parray;
    void* data = nullptr;
    SafeArrayAccessData(array, &data);
    EXPECT_EQ(raisedBy([&] { storeVariant(place.value, Variant(u"x")); }), error::kArrayLocked);
    EXPECT_EQ(place.value.parray, array);
    SafeArrayUnaccessData(array);
}

TEST(Marshal, AFixedSizeArrayIsNotReplaced) {
    SAFEARRAY* array = toSafeArray(Array<std::int32_t>::of({1, 2}));
    array->fFeatures |= FADF_FIXEDSIZE;
    SAFEARRAY* const before = array;
    EXPECT_EQ(raisedBy([&] { replaceArray(array, Array<std::int32_t>::of({3})); }),
              error::kArrayLocked);
    EXPECT_EQ(array, before);
    EXPECT_EQ(static_cast<LONG*>(array->pvData)[1], 2);
    SafeArrayDestroy(array);
}

// An object with an identity and nothing else.
class Bare final : public IUnknown {
public:
    virtual ~Bare() = default;

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override {
        *object = iid == IID_IUnknown ? this : nullptr;
        if (*object == nullptr) return E_NOINTERFACE;
        AddRef();
        return S_OK;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return ++references; }
    ULONG STDMETHODCALLTYPE Release() override { return --references; }

    ULONG references = 1;
};

TEST(Marshal, AnObjectWithoutMembersFitsNoVariableForOnesWithMembers) {
    Bare bare;
    IDispatch* variable = nullptr;
    VARIANT place{};
    place.vt = VT_BYREF | VT_DISPATCH;
    place.ppdispVal = &variable;
    EXPECT_EQ(raisedBy([&] { storeVariant(place, Variant(Object(&bare))); }), error::kTypeMismatch);
    EXPECT_EQ(variable, nullptr);
    EXPECT_EQ(bare.references, 1U);

    IUnknown* any = nullptr;
    place.vt = VT_BYREF | VT_UNKNOWN;
    place.ppunkVal = &any;
    storeVariant(place, Variant(Object(&bare)));
    EXPECT_EQ(any, &bare);
    EXPECT_EQ(bare.references, 2U);
}

TEST(Marshal, AnArrayOfFixedSizeTakesNewElementsInPlace) {
    SAFEARRAY* array = toSafeArray(Array<std::int32_t>::of({2, 1}));
    array->fFeatures |= FADF_FIXEDSIZE;
    SAFEARRAY* const before = array;
    VARIANT place{};
    place.vt = VT_BYREF | VT_ARRAY | VT_I4;
    place.pparray = &array;
    storeVariant(place, Variant(Array<std::int32_t>::of({1, 2})));
    EXPECT_EQ(array, before);
    EXPECT_EQ(static_cast<LONG*>(array->pvData)[1], 2);
    EXPECT_THROW(storeVariant(place, Variant(Array<std::int32_t>::of({1}))), RuntimeError);
    array->fFeatures = static_cast<USHORT>(array->fFeatures & ~FADF_FIXEDSIZE);
    SafeArrayDestroy(array);
}

TEST(Marshal, AReferenceReadsAndWritesItsPlace) {
    HostVariant place{Variant(std::int32_t{4})};
    Variant reference = referenceTo(place.value);
    EXPECT_EQ(*reference.value().as<std::int32_t>(), 4);
    reference.assign(Variant(u"new"));
    EXPECT_EQ(*place.content().as<WString>(), u"new");
    EXPECT_EQ((*reference.referencePointer())->type(), VarType::Variant);
}

TEST(Marshal, AReferenceToATypedVariableConvertsOnTheWayIn) {
    std::uint8_t byte = 7;
    VARIANT place{};
    place.vt = VT_BYREF | VT_UI1;
    place.pbVal = &byte;
    Variant reference = referenceTo(place);
    EXPECT_EQ((*reference.referencePointer())->type(), VarType::Byte);
    reference.assign(Variant(u"200"));
    EXPECT_EQ(byte, 200);
    EXPECT_THROW(reference.assign(Variant(std::int32_t{256})), RuntimeError);
    EXPECT_EQ(byte, 200);
}

TEST(Marshal, AReferenceToATypedArrayTakesOnlyItsElementType) {
    SAFEARRAY* array = toSafeArray(Array<std::int32_t>::of({1}));
    VARIANT place{};
    place.vt = VT_BYREF | VT_ARRAY | VT_I4;
    place.pparray = &array;
    Variant reference = referenceTo(place);
    reference.assign(Variant(Array<std::int32_t>::of({8, 9})));
    EXPECT_EQ(reference.value().asArray<std::int32_t>()->at(1), 9);
    EXPECT_THROW(reference.assign(Variant(Array<double>::of({1.0}))), RuntimeError);
    EXPECT_THROW(reference.assign(Variant(u"x")), RuntimeError);
    SafeArrayDestroy(array);
}

}  // namespace
}  // namespace orvane::automation

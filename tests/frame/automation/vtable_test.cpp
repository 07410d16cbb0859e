#include "host.h"

#include <gtest/gtest.h>

namespace orvane::test {
namespace {

using Header = automation::InterfaceHeader;

/// Calls a slot as an early-bound host does: by its place in the vtable.
template <class... Arguments>
HRESULT slot(Sample& sample, const char* name, automation::MemberKind kind,
             Arguments... arguments) {
    const auto& members = Sample::table().members;
    for (std::size_t i = 0; i < members.size(); ++i) {
        if (std::string_view(members[i].name) != name || members[i].kind != kind) continue;
        auto* header = reinterpret_cast<Header*>(sample.defaultInterface());
        using Function = HRESULT(STDMETHODCALLTYPE*)(Header*, Arguments...);
        const auto function = reinterpret_cast<Function>(header->vtable[7 + i]);
        return function(header, arguments...);
    }
    ADD_FAILURE() << "no member " << name;
    return E_UNEXPECTED;
}

template <class... Arguments>
HRESULT method(Sample& sample, const char* name, Arguments... arguments) {
    return slot(sample, name, automation::MemberKind::method, arguments...);
}

class Vtable : public testing::Test {
protected:
    Ref<Sample> sample_ = make<Sample>();
};

TEST_F(Vtable, HasASlotForEveryMemberBehindTheSevenOfDispatch) {
    EXPECT_EQ(Sample::table().vtable.size(), 7 + Sample::table().members.size());
}

TEST_F(Vtable, CallsWithNumbers) {
    LONG sum = 0;
    EXPECT_EQ(method(*sample_, "Add", LONG{40}, LONG{2}, &sum), S_OK);
    EXPECT_EQ(sum, 42);
    SHORT next = 0;
    EXPECT_EQ(method(*sample_, "NextInteger", SHORT{-2}, &next), S_OK);
    EXPECT_EQ(next, -1);
    DOUBLE twice = 0;
    EXPECT_EQ(method(*sample_, "Twice", DOUBLE{1.5}, &twice), S_OK);
    EXPECT_EQ(twice, 3.0);
    FLOAT half = 0;
    EXPECT_EQ(method(*sample_, "Half", FLOAT{3}, &half), S_OK);
    EXPECT_EQ(half, 1.5F);
    CY cent{};
    CY given{};
    given.int64 = 5;
    EXPECT_EQ(method(*sample_, "Cent", given, &cent), S_OK);
    EXPECT_EQ(cent.int64, 105);
}

TEST_F(Vtable, AnyNonZeroBooleanIsTrueAndTrueIsMinusOne) {
    VARIANT_BOOL result = 7;
    EXPECT_EQ(method(*sample_, "Not", VARIANT_BOOL{1}, &result), S_OK);
    EXPECT_EQ(result, 0);
    EXPECT_EQ(method(*sample_, "Not", VARIANT_FALSE, &result), S_OK);
    EXPECT_EQ(result, -1);
}

TEST_F(Vtable, TextsAreViewsAndResultsAreTheCallersOwn) {
    BSTR first = automation::newBstr(u"left ");
    BSTR second = automation::newBstr(u"right");
    BSTR joined = nullptr;
    EXPECT_EQ(method(*sample_, "Join", first, second, &joined), S_OK);
    EXPECT_EQ(take(joined), u"left right");
    SysFreeString(first);
    SysFreeString(second);
}

TEST_F(Vtable, ANullTextArrivesAsNull) {
    VARIANT_BOOL isNull = 0;
    EXPECT_EQ(method(*sample_, "IsNullText", BSTR{nullptr}, &isNull), S_OK);
    EXPECT_EQ(isNull, VARIANT_TRUE);
    BSTR empty = automation::newBstr(u"");
    EXPECT_EQ(method(*sample_, "IsNullText", empty, &isNull), S_OK);
    EXPECT_EQ(isNull, VARIANT_FALSE);
    SysFreeString(empty);
}

TEST_F(Vtable, InOutTextIsReplaced) {
    BSTR text = automation::newBstr(u"go");
    EXPECT_EQ(method(*sample_, "Append", &text), S_OK);
    EXPECT_EQ(take(text), u"go!");
}

TEST_F(Vtable, AVariantPassesByValue) {
    HostVariant value(Variant(u"x"));
    LONG kind = 0;
    EXPECT_EQ(method(*sample_, "KindOf", value.value, &kind), S_OK);
    EXPECT_EQ(kind, 8);
    EXPECT_EQ(method(*sample_, "KindOf", missingArgument(), &kind), S_OK);
    EXPECT_EQ(kind, -1);
}

TEST_F(Vtable, AnInOutObjectIsCreatedInTheCallersVariable) {
    IDispatch* made = nullptr;
    EXPECT_EQ(method(*sample_, "MakeSample", &made), S_OK);
    ASSERT_NE(made, nullptr);
    IDispatch* same = made;
    EXPECT_EQ(method(*sample_, "MakeSample", &made), S_OK);
    EXPECT_EQ(made, same);
    EXPECT_EQ(made->Release(), 0U);
}

TEST_F(Vtable, AnInOutArrayIsWorkedOnInPlace) {
    SAFEARRAY* numbers = automation::toSafeArray(Array<std::int32_t>::of({4, 5}));
    LONG sum = 0;
    EXPECT_EQ(method(*sample_, "SumOf", &numbers, &sum), S_OK);
    EXPECT_EQ(sum, 9);
    EXPECT_EQ(static_cast<LONG*>(numbers->pvData)[1], -5);
    EXPECT_EQ(numbers->cLocks, 0U);
    SafeArrayDestroy(numbers);
}

TEST_F(Vtable, AnArrayThatIsLockedByTheCallerCannotBeReplaced) {
    SAFEARRAY* numbers = automation::toSafeArray(Array<std::int32_t>::of({4, 5}));
    void* data = nullptr;
    SafeArrayAccessData(numbers, &data);
    EXPECT_EQ(static_cast<std::uint32_t>(method(*sample_, "Resize", &numbers)), 0x800A000AU);
    BSTR result = nullptr;
    EXPECT_EQ(static_cast<std::uint32_t>(method(*sample_, "Renew", &numbers, &result)),
              0x800A000AU);
    EXPECT_EQ(result, nullptr);
    SafeArrayUnaccessData(numbers);
    EXPECT_EQ(static_cast<LONG*>(numbers->pvData)[0], 4);
    SafeArrayDestroy(numbers);
}

TEST_F(Vtable, AFailureLeavesErrorInformation) {
    BSTR text = automation::newBstr(u"too bad");
    EXPECT_EQ(static_cast<std::uint32_t>(method(*sample_, "Fail", LONG{9}, text)), 0x800A0009U);
    SysFreeString(text);
    IErrorInfo* info = nullptr;
    ASSERT_EQ(GetErrorInfo(0, &info), S_OK);
    BSTR description = nullptr;
    info->GetDescription(&description);
    EXPECT_EQ(take(description), u"too bad");
    BSTR source = nullptr;
    info->GetSource(&source);
    EXPECT_EQ(take(source), u"OrvBase0301");
    DWORD context = 0;
    info->GetHelpContext(&context);
    EXPECT_EQ(context, 12U);
    info->Release();
    EXPECT_EQ(GetErrorInfo(0, &info), S_FALSE);
}

TEST_F(Vtable, AMissingPlaceForTheResultIsRefused) {
    EXPECT_EQ(method(*sample_, "Add", LONG{1}, LONG{2}, static_cast<LONG*>(nullptr)), E_POINTER);
}

TEST_F(Vtable, ReadsAndWritesProperties) {
    using automation::MemberKind;
    EXPECT_EQ(slot(*sample_, "Number", MemberKind::propertyPut, LONG{5}), S_OK);
    LONG number = 0;
    EXPECT_EQ(slot(*sample_, "Number", MemberKind::propertyGet, &number), S_OK);
    EXPECT_EQ(number, 5);
}

TEST_F(Vtable, ObjectsAreCountedByTheirReferences) {
    IDispatch* itself = nullptr;
    EXPECT_EQ(method(*sample_, "Itself", &itself), S_OK);
    EXPECT_EQ(itself, dispatchOf(sample_));
    EXPECT_EQ(itself->Release(), 1U);
}

TEST_F(Vtable, AnswersItsInterfacesAndNoOther) {
    IUnknown* unknown = sample_->defaultInterface();
    for (const IID& iid :
         {IID_IUnknown, IID_IDispatch, Sample::table().interfaceId, kAliasInterface}) {
        void* found = nullptr;
        EXPECT_EQ(unknown->QueryInterface(iid, &found), S_OK);
        EXPECT_EQ(found, unknown);
        unknown->Release();
    }
    for (const IID& iid :
         {IID_IProvideClassInfo, IID_ISupportErrorInfo, IID_IConnectionPointContainer}) {
        void* found = nullptr;
        ASSERT_EQ(unknown->QueryInterface(iid, &found), S_OK);
        void* back = nullptr;
        EXPECT_EQ(static_cast<IUnknown*>(found)->QueryInterface(IID_IUnknown, &back), S_OK);
        EXPECT_EQ(back, unknown);
        unknown->Release();
        static_cast<IUnknown*>(found)->Release();
    }
    void* none = &none;
    EXPECT_EQ(unknown->QueryInterface(IID_IStream, &none), E_NOINTERFACE);
    EXPECT_EQ(none, nullptr);
}

TEST_F(Vtable, SupportsErrorInformationOnItsOwnInterfaces) {
    void* found = nullptr;
    ASSERT_EQ(sample_->defaultInterface()->QueryInterface(IID_ISupportErrorInfo, &found), S_OK);
    auto* support = static_cast<ISupportErrorInfo*>(found);
    EXPECT_EQ(support->InterfaceSupportsErrorInfo(Sample::table().interfaceId), S_OK);
    EXPECT_EQ(support->InterfaceSupportsErrorInfo(kAliasInterface), S_OK);
    EXPECT_EQ(support->InterfaceSupportsErrorInfo(IID_IStream), S_FALSE);
    support->Release();
}

}  // namespace
}  // namespace orvane::test

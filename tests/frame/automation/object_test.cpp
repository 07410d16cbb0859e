#include "sample_class.h"

#include "frame/automation/abi.h"
#include "frame/automation/error_info.h"
#include "frame/automation/marshal.h"
#include "frame/values/conversions.h"

#include <gtest/gtest.h>

namespace orvane::test {
namespace {

class LateBound : public testing::Test {
protected:
    Ref<Sample> sample_ = make<Sample>();
    Object object_ = sample_->asObject();
};

template <class Action>
std::int32_t raisedBy(Action&& action) {
    ErrorTrap trap;
    trap(action);
    return trap.number();
}

/// A host's object of one member, which fails with a status and texts beside it and leaves 300 in
/// its first argument when that is a variable.
class Failing final : public IDispatch {
public:
    explicit Failing(HRESULT failure) : status(failure) {}
    virtual ~Failing() = default;

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override {
        *object = iid == IID_IUnknown || iid == IID_IDispatch ? this : nullptr;
        if (*object == nullptr) return E_NOINTERFACE;
        AddRef();
        return S_OK;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return ++references; }
    ULONG STDMETHODCALLTYPE Release() override { return --references; }
    HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID* ids) override {
        ids[0] = 1;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS* parameters, VARIANT*,
                                     EXCEPINFO* exception, UINT*) override {
        ++calls;
        exception->bstrDescription = automation::newBstr(u"a description");
        if (parameters->cArgs != 0 && parameters->rgvarg[0].vt == (VT_BYREF | VT_VARIANT)) {
            automation::storeVariant(*parameters->rgvarg[0].pvarVal, Variant(std::int32_t{300}));
        }
        return status;
    }

    HRESULT status;
    ULONG references = 1;
    int calls = 0;
};

TEST(LateBoundFailure, AnObjectIsNotAskedTwice) {
    Failing host(E_FAIL);
    EXPECT_EQ(raisedBy([&] { Object(&host).get(u"Anything"); }), static_cast<std::int32_t>(E_FAIL));
    EXPECT_EQ(host.calls, 1);
    EXPECT_EQ(host.references, 1U);
}

TEST(LateBoundFailure, AnArgumentThatCannotComeBackDoesNotHideTheError) {
    std::uint8_t byte = 7;
    VARIANT place{};
    place.vt = VT_BYREF | VT_UI1;
    place.pbVal = &byte;
    Failing host(DISP_E_BADINDEX);
    EXPECT_EQ(raisedBy([&] { Object(&host).call(u"Anything", {automation::referenceTo(place)}); }),
              error::kSubscriptOutOfRange);
    host.status = S_OK;
    EXPECT_EQ(raisedBy([&] { Object(&host).call(u"Anything", {automation::referenceTo(place)}); }),
              error::kOverflow);
    EXPECT_EQ(byte, 7);
    EXPECT_EQ(host.references, 1U);
}

TEST_F(LateBound, ReadsAndWritesProperties) {
    object_.put(u"number", Variant(u"31"));
    EXPECT_EQ(*object_.get(u"NUMBER").as<std::int32_t>(), 31);
}

TEST_F(LateBound, CallsMethodsWithArgumentsInOrder) {
    EXPECT_EQ(*object_.call(u"Join", {Variant(u"a"), Variant(u"b")}).as<WString>(), u"ab");
}

TEST_F(LateBound, ReadsTheDefaultMember) {
    EXPECT_EQ(*object_.defaultValue({Variant(std::int32_t{1})}).as<WString>(), u"one");
}

TEST_F(LateBound, WritesAPropertyByReference) {
    const Ref<Sample> partner = make<Sample>();
    object_.putReference(u"Partner", partner->asObject());
    EXPECT_TRUE(sample_->Partner().is(partner->asObject()));
}

TEST_F(LateBound, WritesAnIndexedProperty) {
    object_.put(u"Item", Variant(u"eins"), {Variant(std::int32_t{1})});
    EXPECT_EQ(sample_->Item(Variant(std::int32_t{1})), u"eins");
}

TEST_F(LateBound, ByReferenceArgumentsComeBack) {
    Variant text(u"on");
    object_.call(u"Append", {Variant::reference(text)});
    EXPECT_EQ(*text.as<WString>(), u"on!");
}

TEST_F(LateBound, ByReferenceArgumentsComeBackFromAFailedCall) {
    Variant number(std::int32_t{1});
    EXPECT_EQ(raisedBy([&] { object_.call(u"StoreThenFail", {Variant::reference(number)}); }), 5);
    EXPECT_EQ(*number.as<std::int32_t>(), 99);
}

TEST_F(LateBound, AnUnknownMemberRaises438) {
    EXPECT_EQ(raisedBy([&] { object_.get(u"Nonsense"); }), error::kNoSuchMember);
    EXPECT_FALSE(object_.hasMember(u"Nonsense"));
    EXPECT_TRUE(object_.hasMember(u"join"));
}

TEST_F(LateBound, AnyCallOnNothingRaises91) {
    const Object nothing;
    EXPECT_EQ(raisedBy([&] { nothing.get(u"Number"); }), error::kObjectNotSet);
    EXPECT_EQ(raisedBy([&] { nothing.put(u"Number", Variant(true)); }), error::kObjectNotSet);
    EXPECT_EQ(raisedBy([&] { nothing.call(u"Number"); }), error::kObjectNotSet);
    EXPECT_EQ(raisedBy([&] { nothing.defaultValue(); }), error::kObjectNotSet);
}

TEST_F(LateBound, AnErrorOfTheObjectComesThroughUnchanged) {
    ErrorTrap trap;
    trap([&] { object_.call(u"Fail", {Variant(std::int32_t{1234}), Variant(u"mine")}); });
    ASSERT_TRUE(trap.failure());
    EXPECT_EQ(trap.failure()->number, 1234);
    EXPECT_EQ(trap.failure()->description, u"mine");
    EXPECT_EQ(trap.failure()->helpContext, 12);
}

TEST_F(LateBound, AnArgumentThatDoesNotFitRaises13) {
    EXPECT_EQ(raisedBy([&] {
                  object_.call(u"Add", {Variant(u"x"), Variant(u"y")});
              }),
              error::kTypeMismatch);
}

TEST_F(LateBound, ALeftOutArgumentRaises449) {
    EXPECT_EQ(raisedBy([&] { object_.call(u"Add", {Variant(std::int32_t{1})}); }),
              error::kArgumentNotOptional);
}

TEST_F(LateBound, IdentityIsTheObjectNotTheReference) {
    const Object same = sample_->asObject();
    const Object other = make<Sample>()->asObject();
    EXPECT_TRUE(object_.is(same));
    EXPECT_FALSE(object_.is(other));
    EXPECT_FALSE(object_.is(Object()));
    EXPECT_TRUE(Object().is(Object()));
}

TEST_F(LateBound, CopiesShareAndTheLastReleases) {
    const int before = Sample::alive;
    {
        Object first = make<Sample>()->asObject();
        Object second = first;
        first = Object();
        EXPECT_EQ(*second.get(u"Number").as<std::int32_t>(), 0);
        EXPECT_EQ(Sample::alive, before + 1);
    }
    EXPECT_EQ(Sample::alive, before);
}

TEST_F(LateBound, AnObjectConvertsThroughItsDefaultMember) {
    // The default member needs an index: reading it without one is the object's own error.
    EXPECT_EQ(raisedBy([&] { toText(Variant(object_)); }), error::kArgumentNotOptional);
}

TEST_F(LateBound, CallsBackIntoAnObjectByName) {
    const Ref<Sample> other = make<Sample>();
    EXPECT_EQ(*object_
                   .call(u"CallBack",
                         {Variant(other->asObject()), Variant(u"Item"), Variant(std::int32_t{2})})
                   .as<WString>(),
              u"two");
}

}  // namespace
}  // namespace orvane::test

#include "frame/automation/abi.h"
#include "frame/automation/marshal.h"
#include "frame/values/compare.h"
#include "frame/values/conversions.h"
#include "support/raised_error.h"

#include "orvane/automation.h"

#include <gtest/gtest.h>

#include <functional>

// A host's objects stand for their default member wherever a plain value is wanted.
namespace orvane::test {
namespace {

/// A host object whose default member gives what `answer` does; without one it has no member.
class DefaultObject final : public IDispatch {
public:
    explicit DefaultObject(std::function<Variant()> answer) : answer_(std::move(answer)) {}
    virtual ~DefaultObject() = default;

    static Object make(std::function<Variant()> answer) {
        return Object::adopt(new DefaultObject(std::move(answer)));
    }

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override {
        *object = nullptr;
        if (!(iid == IID_IUnknown) && !(iid == IID_IDispatch)) return E_NOINTERFACE;
        AddRef();
        *object = static_cast<IDispatch*>(this);
        return S_OK;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return ++references_; }
    ULONG STDMETHODCALLTYPE Release() override {
        const ULONG left = --references_;
        if (left == 0) delete this;
        return left;
    }
    HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) override {
        *count = 0;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override {
        return DISP_E_UNKNOWNNAME;
    }
    HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID, LCID, WORD, DISPPARAMS*, VARIANT* result,
                                     EXCEPINFO*, UINT*) override {
        if (id != DISPID_VALUE || !answer_) return DISP_E_MEMBERNOTFOUND;
        automation::toVariant(*result, answer_());
        return S_OK;
    }

private:
    std::function<Variant()> answer_;
    ULONG references_ = 1;
};

TEST(DefaultMember, StandsForTheObjectInEveryConversion) {
    const Variant object(DefaultObject::make([] { return Variant(u"42"); }));
    EXPECT_EQ(toLong(object), 42);
    EXPECT_EQ(toInteger(object), 42);
    EXPECT_EQ(toByte(object), 42);
    EXPECT_EQ(toDouble(object), 42.0);
    EXPECT_EQ(toCurrency(object).scaled, 420000);
    EXPECT_EQ(toText(object), u"42");
    EXPECT_TRUE(toBoolean(object));
}

TEST(DefaultMember, IsFollowedFromObjectToObject) {
    const Object inner = DefaultObject::make([] { return Variant(std::int32_t{7}); });
    const Variant outer(DefaultObject::make([inner] { return Variant(inner); }));
    EXPECT_EQ(toLong(outer), 7);
}

TEST(DefaultMember, ThatIsTheObjectItselfEndsInATypeMismatch) {
    IUnknown* self = nullptr;
    const Object object = DefaultObject::make([&self] { return Variant(Object(self)); });
    self = object.unknown();
    EXPECT_EQ(raisedBy([&] { toLong(Variant(object)); }), error::kTypeMismatch);
}

TEST(DefaultMember, ThatIsMissingRaises438) {
    const Variant object(DefaultObject::make(nullptr));
    EXPECT_EQ(raisedBy([&] { toText(object); }), error::kNoSuchMember);
}

TEST(DefaultMember, OfNothingRaises91) {
    EXPECT_EQ(raisedBy([] { toLong(Variant(Object())); }), error::kObjectNotSet);
}

TEST(DefaultMember, TakesPartInComparisons) {
    const Variant object(DefaultObject::make([] { return Variant(2.5); }));
    EXPECT_TRUE(isEqual(object, Variant(u"2.5")));
    EXPECT_FALSE(isEqual(object, Variant(std::int32_t{3})));
    const Variant empty(DefaultObject::make([] { return Variant::null(); }));
    EXPECT_EQ(variantEquals(empty, Variant(true)).type(), VarType::Null);
    EXPECT_FALSE(isEqual(empty, Variant(true)));
}

}  // namespace
}  // namespace orvane::test

#include "frame/values/type_name.h"

#include "sample_class.h"

#include "frame/automation/abi.h"

#include <gtest/gtest.h>

namespace orvane::test {
namespace {

TEST(TypeName, NamesEveryTag) {
    EXPECT_EQ(typeName(Variant()), u"Empty");
    EXPECT_EQ(typeName(Variant::null()), u"Null");
    EXPECT_EQ(typeName(Variant(std::int16_t{1})), u"Integer");
    EXPECT_EQ(typeName(Variant(std::int32_t{1})), u"Long");
    EXPECT_EQ(typeName(Variant(1.0F)), u"Single");
    EXPECT_EQ(typeName(Variant(1.0)), u"Double");
    EXPECT_EQ(typeName(Variant(Currency{1})), u"Currency");
    EXPECT_EQ(typeName(Variant(Date{1})), u"Date");
    EXPECT_EQ(typeName(Variant(u"")), u"String");
    EXPECT_EQ(typeName(Variant(true)), u"Boolean");
    EXPECT_EQ(typeName(Variant::missing()), u"Error");
    EXPECT_EQ(typeName(Variant(std::uint8_t{1})), u"Byte");
}

TEST(TypeName, NamesArraysByTheirElements) {
    EXPECT_EQ(typeName(Variant(Array<std::uint8_t>())), u"Byte()");
    EXPECT_EQ(typeName(Variant(Array<WString>::of({u"a"}))), u"String()");
    EXPECT_EQ(typeName(Variant(Array<Variant>::empty())), u"Variant()");
    EXPECT_EQ(typeName(Variant(Array<Object>::empty())), u"Object()");
}

TEST(TypeName, ReadsReferencesThrough) {
    Variant variable(std::int32_t{1});
    EXPECT_EQ(typeName(Variant::reference(variable)), u"Long");
}

/// An object that is counted and answers what its makers let it.
class Host final : public IDispatch {
public:
    explicit Host(bool late) : hasMembers(late) {}
    virtual ~Host() = default;

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override {
        const bool known = iid == IID_IUnknown || (hasMembers && iid == IID_IDispatch);
        *object = known ? this : nullptr;
        if (!known) return E_NOINTERFACE;
        AddRef();
        return S_OK;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return ++references; }
    ULONG STDMETHODCALLTYPE Release() override { return --references; }
    HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo** given) override {
        *given = info;
        if (info == nullptr) return E_NOTIMPL;
        info->AddRef();
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override {
        return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS*, VARIANT*, EXCEPINFO*,
                                     UINT*) override {
        return E_NOTIMPL;
    }

    bool hasMembers;
    ITypeInfo* info = nullptr;
    ULONG references = 1;
};

/// Type information of which only the name is ever asked.
class Info final : public ITypeInfo {
public:
    explicit Info(const char16_t* name) : name_(name) {}
    virtual ~Info() = default;

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID, void**) override { return E_NOINTERFACE; }
    ULONG STDMETHODCALLTYPE AddRef() override { return ++references; }
    ULONG STDMETHODCALLTYPE Release() override { return --references; }
    HRESULT STDMETHODCALLTYPE GetTypeAttr(TYPEATTR**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetTypeComp(ITypeComp**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetFuncDesc(UINT, FUNCDESC**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetVarDesc(UINT, VARDESC**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetNames(MEMBERID, BSTR*, UINT, UINT*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetRefTypeOfImplType(UINT, HREFTYPE*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetImplTypeFlags(UINT, INT*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetIDsOfNames(LPOLESTR*, UINT, MEMBERID*) override {
        return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE Invoke(PVOID, MEMBERID, WORD, DISPPARAMS*, VARIANT*, EXCEPINFO*,
                                     UINT*) override {
        return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE GetDocumentation(MEMBERID id, BSTR* name, BSTR*, DWORD*,
                                               BSTR*) override {
        if (id != MEMBERID_NIL) return TYPE_E_ELEMENTNOTFOUND;
        *name = automation::newBstr(name_);
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE GetDllEntry(MEMBERID, INVOKEKIND, BSTR*, BSTR*, WORD*) override {
        return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE GetRefTypeInfo(HREFTYPE, ITypeInfo**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE AddressOfMember(MEMBERID, INVOKEKIND, PVOID*) override {
        return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown*, REFIID, PVOID*) override {
        return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE GetMops(MEMBERID, BSTR*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetContainingTypeLib(ITypeLib**, UINT*) override { return E_NOTIMPL; }
    void STDMETHODCALLTYPE ReleaseTypeAttr(TYPEATTR*) override {}
    void STDMETHODCALLTYPE ReleaseFuncDesc(FUNCDESC*) override {}
    void STDMETHODCALLTYPE ReleaseVarDesc(VARDESC*) override {}

    ULONG references = 1;

private:
    const char16_t* name_;
};

TEST(TypeName, NamesAnObjectByItsClass) {
    Info info(u"_Collection");
    Host host(true);
    host.info = &info;
    EXPECT_EQ(typeName(Variant(Object(&host))), u"Collection");
    EXPECT_EQ(info.references, 1U);
    EXPECT_EQ(host.references, 1U);
}

TEST(TypeName, NamesAnObjectThatTellsNoClassByWhatItCanDo) {
    Host late(true);
    Host bare(false);
    EXPECT_EQ(typeName(Variant(Object(&late))), u"Object");
    EXPECT_EQ(typeName(Variant(Object(&bare))), u"Unknown");
    EXPECT_EQ(typeName(Variant(Object())), u"Nothing");
    EXPECT_EQ(late.references, 1U);
    EXPECT_EQ(bare.references, 1U);
    // Without a type library a class of the library tells nothing either.
    EXPECT_EQ(typeName(Variant(make<Sample>()->asObject())), u"Object");
}

}  // namespace
}  // namespace orvane::test

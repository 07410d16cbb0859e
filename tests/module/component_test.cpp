#include "libraries.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <vector>

namespace orvane::tests {
namespace {

using host::Error;
using host::Pointer;
using host::Text;

/// An event sink, as hosts have them: `Added` is noted, `Asked` is answered with 42.
class Sink final : public IDispatch {
public:
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override {
        const bool known = iid == IID_IUnknown || iid == IID_IDispatch || iid == DIID___TestItems;
        *object = known ? this : nullptr;
        if (known) AddRef();
        return known ? S_OK : E_NOINTERFACE;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return ++references; }
    ULONG STDMETHODCALLTYPE Release() override { return --references; }
    HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) override {
        *count = 0;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override {
        return DISP_E_UNKNOWNNAME;
    }
    HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID, LCID, WORD, DISPPARAMS* given, VARIANT*,
                                     EXCEPINFO*, UINT*) override {
        events.push_back(id);
        if (id != 2) return fails ? DISP_E_TYPEMISMATCH : S_OK;
        VARIANT& answer = given->rgvarg[0];
        if (answer.vt == (VT_BYREF | VT_I4)) *answer.plVal = 42;
        if (answer.vt == (VT_BYREF | VT_VARIANT)) {
            answer.pvarVal->vt = VT_I4;
            answer.pvarVal->lVal = 42;
        }
        return S_OK;
    }

    ULONG references = 1;
    bool fails = false;
    std::vector<DISPID> events;
};

struct ComponentTest : testing::Test {
    TheComponent component;
    Pointer<_TestItems> items = component.create<_TestItems>();
    Pointer<_TestProbe> probe = component.create<_TestProbe>();

    Pointer<IConnectionPoint> connectionPoint() {
        Pointer<IConnectionPoint> point;
        const auto container =
            items.query<IConnectionPointContainer>(IID_IConnectionPointContainer);
        component.check(container->FindConnectionPoint(DIID___TestItems, point.receive()));
        return point;
    }

    void add(const char16_t* text) {
        VARIANT missing{};
        missing.vt = VT_ERROR;
        missing.scode = DISP_E_PARAMNOTFOUND;
        VARIANT value{};
        Text held(text);
        value.vt = VT_BSTR;
        value.bstrVal = held;
        component.check(items->Add(value, missing));
    }
};

TEST_F(ComponentTest, ConnectedSinkGetsEventsUntilItIsDisconnected) {
    Sink sink;
    DWORD cookie = 0;
    const auto point = connectionPoint();
    ASSERT_EQ(point->Advise(&sink, &cookie), S_OK);
    add(u"one");
    EXPECT_EQ(point->Unadvise(cookie), S_OK);
    add(u"two");
    EXPECT_THAT(sink.events, testing::ElementsAre(1));
    EXPECT_EQ(sink.references, 1U);
    EXPECT_EQ(point->Unadvise(cookie), CONNECT_E_NOCONNECTION);
}

TEST_F(ComponentTest, AnswerOfAnEventComesBackByReference) {
    Sink sink;
    DWORD cookie = 0;
    const auto point = connectionPoint();
    ASSERT_EQ(point->Advise(&sink, &cookie), S_OK);
    LONG answer = 0;
    component.check(items->Ask(Text(u"what?"), &answer));
    EXPECT_EQ(answer, 42);
    EXPECT_EQ(point->Unadvise(cookie), S_OK);
}

TEST_F(ComponentTest, FailingSinkDisturbsNobody) {
    Sink failing;
    Sink other;
    failing.fails = true;
    DWORD cookies[2] = {};
    const auto point = connectionPoint();
    ASSERT_EQ(point->Advise(&failing, &cookies[0]), S_OK);
    ASSERT_EQ(point->Advise(&other, &cookies[1]), S_OK);
    add(u"one");
    EXPECT_THAT(failing.events, testing::ElementsAre(1));
    EXPECT_THAT(other.events, testing::ElementsAre(1));
    EXPECT_EQ(point->Unadvise(cookies[0]), S_OK);
    EXPECT_EQ(point->Unadvise(cookies[1]), S_OK);
}

TEST_F(ComponentTest, ConnectionsEndWithTheObject) {
    Sink sink;
    DWORD cookie = 0;
    ASSERT_EQ(connectionPoint()->Advise(&sink, &cookie), S_OK);
    EXPECT_EQ(sink.references, 2U);
    items = {};
    EXPECT_EQ(sink.references, 1U);
}

TEST_F(ComponentTest, ClassWithoutEventsHasNoConnectionPoints) {
    EXPECT_FALSE(probe.query<IUnknown>(IID_IConnectionPointContainer));
}

TEST_F(ComponentTest, EnumerationGivesTheItemsInTheirOrder) {
    add(u"one");
    add(u"two");
    Pointer<IUnknown> unknown;
    component.check(items->get__NewEnum(unknown.receive()));
    const auto enumeration = unknown.query<IEnumVARIANT>(IID_IEnumVARIANT);
    VARIANT values[3] = {};
    ULONG fetched = 0;
    ASSERT_EQ(enumeration->Next(3, values, &fetched), S_FALSE);
    ASSERT_EQ(fetched, 2U);
    EXPECT_TRUE(host::viewOf(values[0].bstrVal) == u"one");
    EXPECT_TRUE(host::viewOf(values[1].bstrVal) == u"two");
    component.clear(&values[0]);
    component.clear(&values[1]);
}

TEST_F(ComponentTest, PlainArgumentsByReferenceComeBackChanged) {
    BYTE byte = 1;
    SHORT integer = 2;
    LONG number = 3;
    FLOAT single = 1.5F;
    DOUBLE real = 2.25;
    CY money{};
    money.int64 = 10000;
    DATE date = 10;
    VARIANT_BOOL flag = VARIANT_FALSE;
    component.check(probe->ChangeByte(&byte));
    component.check(probe->ChangeInteger(&integer));
    component.check(probe->ChangeLong(&number));
    component.check(probe->ChangeSingle(&single));
    component.check(probe->ChangeDouble(&real));
    component.check(probe->ChangeCurrency(&money));
    component.check(probe->ChangeDate(&date));
    component.check(probe->ChangeBoolean(&flag));
    EXPECT_EQ(byte, 2);
    EXPECT_EQ(integer, 3);
    EXPECT_EQ(number, 4);
    EXPECT_EQ(single, 3.0F);
    EXPECT_EQ(real, 4.5);
    EXPECT_EQ(money.int64, 20000);
    EXPECT_EQ(date, 11.0);
    EXPECT_EQ(flag, VARIANT_TRUE);
}

TEST_F(ComponentTest, TextsAndObjectsByReferenceComeBackChanged) {
    Text text(u"text");
    component.check(probe->ChangeText(text.place()));
    EXPECT_TRUE(text == u"text!");
    Pointer<_TestItems> made;
    component.check(probe->ChangeItems(made.place()));
    ASSERT_TRUE(made);
    LONG count = 0;
    component.check(made->get_Count(&count));
    EXPECT_EQ(count, 1);
    _TestItems* const former = made.get();
    component.check(probe->ChangeItems(made.place()));
    EXPECT_EQ(made.get(), former);
    component.check(made->get_Count(&count));
    EXPECT_EQ(count, 2);
}

TEST_F(ComponentTest, ErrorsTellNumberDescriptionAndSource) {
    try {
        component.check(probe->Fail(777, Text(u"рассказано")));
        FAIL() << "no error";
    } catch (const Error& failure) {
        EXPECT_EQ(failure.number(), 777);
        EXPECT_TRUE(failure.description == u"рассказано");
        EXPECT_FALSE(failure.source.empty());
    }
}

TEST_F(ComponentTest, EnumerationsAndArraysCross) {
    TestShape next = tsNone;
    component.check(probe->NextShape(tsRound, &next));
    EXPECT_EQ(next, tsSquare);
    VARIANT holder{};
    holder.vt = VT_ARRAY | VT_I4;
    component.check(probe->Counted(3, &holder.parray));
    ASSERT_NE(holder.parray, nullptr);
    EXPECT_EQ(holder.parray->rgsabound[0].cElements, 3U);
    EXPECT_EQ(holder.parray->rgsabound[0].lLbound, 1);
    EXPECT_EQ(static_cast<LONG*>(holder.parray->pvData)[2], 3);
    component.check(probe->ChangeLongs(&holder.parray));
    EXPECT_EQ(static_cast<LONG*>(holder.parray->pvData)[2], 4);
    EXPECT_EQ(component.clear(&holder), S_OK);
}

TEST_F(ComponentTest, EarlierInterfaceIdentifierGivesTheInterface) {
    EXPECT_EQ(items.query<_TestItems>(IID_TestItems___v0).get(), items.get());
}

}  // namespace
}  // namespace orvane::tests

#include "host.h"

#include "frame/automation/connection_points.h"
#include "frame/automation/library_lifetime.h"

#include <gtest/gtest.h>

#include <functional>
#include <memory>

namespace orvane::test {
namespace {

/// A host's event sink: answers the event interface and keeps what it was told.
class Sink final : public IDispatch {
public:
    virtual ~Sink() = default;

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override {
        *object = nullptr;
        if (!(iid == IID_IUnknown) && !(iid == IID_IDispatch) && !(iid == kEventInterface)) {
            return E_NOINTERFACE;
        }
        AddRef();
        *object = static_cast<IDispatch*>(this);
        return S_OK;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return ++references; }
    ULONG STDMETHODCALLTYPE Release() override { return --references; }
    HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) override {
        *count = 0;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override {
        return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID, LCID, WORD, DISPPARAMS* parameters,
                                     VARIANT*, EXCEPINFO* exception, UINT*) override {
        heard.push_back(id);
        times.push_back(parameters->rgvarg[1].lVal);
        text = std::u16string(automation::viewOf(parameters->rgvarg[0].bstrVal));
        if (whenHeard) whenHeard();
        if (!fails) return S_OK;
        exception->bstrDescription = automation::newBstr(u"the sink failed");
        return DISP_E_EXCEPTION;
    }

    ULONG references = 1;
    std::vector<DISPID> heard;
    std::vector<LONG> times;
    std::u16string text;
    std::function<void()> whenHeard;
    bool fails = false;
};

class Events : public testing::Test {
protected:
    void SetUp() override {
        void* found = nullptr;
        ASSERT_EQ(
            sample_->defaultInterface()->QueryInterface(IID_IConnectionPointContainer, &found),
            S_OK);
        auto* container = static_cast<IConnectionPointContainer*>(found);
        ASSERT_EQ(container->FindConnectionPoint(kEventInterface, &point_), S_OK);
        container->Release();
    }
    void TearDown() override { point_->Release(); }

    Ref<Sample> sample_ = make<Sample>();
    IConnectionPoint* point_ = nullptr;
};

TEST_F(Events, ReachASinkWithTheirArgumentsInOrder) {
    Sink sink;
    DWORD cookie = 0;
    ASSERT_EQ(point_->Advise(&sink, &cookie), S_OK);
    sample_->Ring(3);
    EXPECT_EQ(sink.heard, std::vector<DISPID>{kRung});
    EXPECT_EQ(sink.times, std::vector<LONG>{3});
    EXPECT_EQ(sink.text, u"ding");
    EXPECT_EQ(point_->Unadvise(cookie), S_OK);
    sample_->Ring(4);
    EXPECT_EQ(sink.heard.size(), 1U);
    EXPECT_EQ(sink.references, 1U);
}

TEST_F(Events, ReachEverySinkAlsoBehindOneThatFails) {
    Sink first;
    Sink second;
    first.fails = true;
    DWORD firstCookie = 0;
    DWORD secondCookie = 0;
    point_->Advise(&first, &firstCookie);
    point_->Advise(&second, &secondCookie);
    sample_->Ring(1);
    EXPECT_EQ(first.heard.size(), 1U);
    EXPECT_EQ(second.heard.size(), 1U);
    point_->Unadvise(firstCookie);
    point_->Unadvise(secondCookie);
}

TEST_F(Events, ASinkMayDisconnectItselfWhileItHandlesOne) {
    Sink sink;
    DWORD cookie = 0;
    point_->Advise(&sink, &cookie);
    sink.whenHeard = [&] { EXPECT_EQ(point_->Unadvise(cookie), S_OK); };
    sample_->Ring(1);
    sample_->Ring(2);
    EXPECT_EQ(sink.heard.size(), 1U);
    EXPECT_EQ(sink.references, 1U);
}

/// A variable that takes no value.
class Closed final : public VariantReference {
public:
    VarType type() const override { return VarType::Variant; }
    Variant read() const override { return std::int32_t{1}; }
    void write(const Variant&) override { raise(error::kOverflow); }
};

TEST_F(Events, AnArgumentThatCannotComeBackKeepsNothingAlive) {
    const std::uint32_t before = automation::LibraryUse::count();
    {
        automation::ConnectionPoints points(*sample_, Sample::table().events);
        Variant arguments[] = {Variant::reference(std::make_shared<Closed>()), Variant(u"ding")};
        EXPECT_THROW(points.fire(kRung, arguments), RuntimeError);
    }
    EXPECT_EQ(automation::LibraryUse::count(), before);
}

TEST_F(Events, SinksAreReleasedWithTheObject) {
    Sink sink;
    DWORD cookie = 0;
    point_->Advise(&sink, &cookie);
    EXPECT_EQ(sink.references, 2U);
    sample_ = nullptr;
    EXPECT_EQ(sink.references, 1U);
    EXPECT_EQ(point_->Advise(&sink, &cookie), E_UNEXPECTED);
}

TEST_F(Events, AnUnknownCookieIsRefused) {
    EXPECT_EQ(point_->Unadvise(77), CONNECT_E_NOCONNECTION);
}

TEST_F(Events, ThePointTellsItsInterfaceAndContainer) {
    IID iid{};
    EXPECT_EQ(point_->GetConnectionInterface(&iid), S_OK);
    EXPECT_TRUE(iid == kEventInterface);
    IConnectionPointContainer* container = nullptr;
    ASSERT_EQ(point_->GetConnectionPointContainer(&container), S_OK);
    IConnectionPoint* none = nullptr;
    EXPECT_EQ(container->FindConnectionPoint(IID_IStream, &none), CONNECT_E_NOCONNECTION);
    IEnumConnectionPoints* points = nullptr;
    ASSERT_EQ(container->EnumConnectionPoints(&points), S_OK);
    IConnectionPoint* first = nullptr;
    ULONG fetched = 0;
    EXPECT_EQ(points->Next(1, &first, &fetched), S_OK);
    EXPECT_EQ(first, point_);
    EXPECT_EQ(points->Skip(1), S_FALSE);
    first->Release();
    points->Release();
    container->Release();
}

TEST_F(Events, ListTheirConnections) {
    Sink sink;
    DWORD cookie = 0;
    point_->Advise(&sink, &cookie);
    IEnumConnections* connections = nullptr;
    ASSERT_EQ(point_->EnumConnections(&connections), S_OK);
    CONNECTDATA data{};
    EXPECT_EQ(connections->Next(1, &data, nullptr), S_OK);
    EXPECT_EQ(data.dwCookie, cookie);
    data.pUnk->Release();
    connections->Release();
    point_->Unadvise(cookie);
    EXPECT_EQ(sink.references, 1U);
}

}  // namespace
}  // namespace orvane::test

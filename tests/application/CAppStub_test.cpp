#include "application/CAppStub.h"

#include "application/host_application.h"
#include "frame/automation/abi.h"
#include "frame/automation/table.h"
#include "frame/values/object.h"
#include "support/raised_error.h"

#include "orvane/automation.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <cstdlib>
#include <string>
#include <type_traits>

namespace orvane {
namespace {

using automation::AutomationObject;
using automation::InterfaceHeader;
using test::raisedBy;

constexpr std::size_t kDispatchSlots = 7;

/// What one slot of the host application interface takes or gives.
enum class Kind : std::uint8_t { textGet, textPut, longGet, longPut, flagGet, flagPut, other };

struct Slot {
    const char* name;
    Kind kind;
};

// The interface's slots behind the seven of IDispatch, counted by hand.
constexpr std::array<Slot, 42> kSlots{{
    {"Path", Kind::textGet},
    {"EXEName", Kind::textGet},
    {"Title", Kind::other},
    {"Title", Kind::other},
    {"PrevInstance", Kind::flagGet},
    {"StartMode", Kind::longGet},
    {"TaskVisible", Kind::flagGet},
    {"TaskVisible", Kind::flagPut},
    {"OleServerBusyTimeout", Kind::longGet},
    {"OleServerBusyTimeout", Kind::longPut},
    {"OleServerBusyMsgTitle", Kind::textGet},
    {"OleServerBusyMsgTitle", Kind::textPut},
    {"OleServerBusyMsgText", Kind::textGet},
    {"OleServerBusyMsgText", Kind::textPut},
    {"OleServerBusyRaiseError", Kind::flagGet},
    {"OleServerBusyRaiseError", Kind::flagPut},
    {"OleRequestPendingTimeout", Kind::longGet},
    {"OleRequestPendingTimeout", Kind::longPut},
    {"OleRequestPendingMsgTitle", Kind::textGet},
    {"OleRequestPendingMsgTitle", Kind::textPut},
    {"OleRequestPendingMsgText", Kind::textGet},
    {"OleRequestPendingMsgText", Kind::textPut},
    {"Major", Kind::other},
    {"Minor", Kind::other},
    {"Revision", Kind::other},
    {"Comments", Kind::textGet},
    {"CompanyName", Kind::textGet},
    {"FileDescription", Kind::textGet},
    {"LegalCopyright", Kind::textGet},
    {"LegalTrademarks", Kind::textGet},
    {"ProductName", Kind::textGet},
    {"hInstance", Kind::longGet},
    {"NonModalAllowed", Kind::flagGet},
    {"LogPath", Kind::textGet},
    {"LogMode", Kind::longGet},
    {"UnattendedApp", Kind::flagGet},
    {"ThreadID", Kind::longGet},
    {"HelpFile", Kind::textGet},
    {"HelpFile", Kind::textPut},
    {"StartLogging", Kind::other},
    {"LogEvent", Kind::other},
    {"RetainedProject", Kind::flagGet},
}};
constexpr std::size_t kTitleGet = 2;
constexpr std::size_t kTitlePut = 3;
constexpr std::size_t kMajor = 22;
constexpr std::size_t kMinor = 23;
constexpr std::size_t kRevision = 24;
constexpr std::size_t kStartLogging = 39;
constexpr std::size_t kLogEvent = 40;

/// A stub behind its interface pointer, called by the place of a slot in the vtable.
class RawStub : public testing::Test {
protected:
    RawStub() {
        stub_->Init(u"Title", 1, 2, 3);
        void* found = nullptr;
        EXPECT_EQ(stub_->defaultInterface()->QueryInterface(kHostApplicationInterface, &found),
                  S_OK);
        header_ = static_cast<InterfaceHeader*>(found);
    }
    ~RawStub() override { reinterpret_cast<IUnknown*>(header_)->Release(); }

    template <class... Arguments>
    HRESULT call(std::size_t slot, Arguments... arguments) {
        using Function = HRESULT(STDMETHODCALLTYPE*)(InterfaceHeader*, Arguments...);
        const auto function = reinterpret_cast<Function>(header_->vtable[kDispatchSlots + slot]);
        return function(header_, arguments...);
    }
    std::u16string text(std::size_t slot) {
        BSTR result = automation::newBstr(u"as it was");
        BSTR given = result;
        EXPECT_EQ(call(slot, &result), S_OK) << kSlots[slot].name;
        const std::u16string taken(automation::viewOf(result));
        SysFreeString(given);
        SysFreeString(result);
        return taken;
    }
    SHORT number(std::size_t slot) {
        SHORT result = 77;
        EXPECT_EQ(call(slot, &result), S_OK);
        return result;
    }

    Ref<CAppStub> stub_ = make<CAppStub>();
    InterfaceHeader* header_ = nullptr;
};

TEST_F(RawStub, HasTheSlotsOfTheInterfaceInTheirOrder) {
    const auto& members = CAppStub::table().members;
    ASSERT_EQ(members.size(), kSlots.size());
    ASSERT_EQ(CAppStub::table().vtable.size(), kDispatchSlots + kSlots.size());
    for (std::size_t i = 0; i < kSlots.size(); ++i)
        EXPECT_STREQ(members[i].name, kSlots[i].name) << i;
}

TEST_F(RawStub, EverythingButTheFieldsIsEmptyAndIgnoresWhatItIsGiven) {
    BSTR given = automation::newBstr(u"given");
    for (int round = 0; round < 2; ++round) {
        for (std::size_t i = 0; i < kSlots.size(); ++i) {
            LONG number = 77;
            VARIANT_BOOL flag = 77;
            switch (kSlots[i].kind) {
            case Kind::textGet:
                EXPECT_EQ(text(i), u"") << kSlots[i].name;
                break;
            case Kind::longGet:
                EXPECT_EQ(call(i, &number), S_OK) << kSlots[i].name;
                EXPECT_EQ(number, 0) << kSlots[i].name;
                break;
            case Kind::flagGet:
                EXPECT_EQ(call(i, &flag), S_OK) << kSlots[i].name;
                EXPECT_EQ(flag, VARIANT_FALSE) << kSlots[i].name;
                break;
            case Kind::textPut:
                EXPECT_EQ(call(i, given), S_OK) << kSlots[i].name;
                break;
            case Kind::longPut:
                EXPECT_EQ(call(i, LONG{5}), S_OK) << kSlots[i].name;
                break;
            case Kind::flagPut:
                EXPECT_EQ(call(i, VARIANT_TRUE), S_OK) << kSlots[i].name;
                break;
            case Kind::other:
                break;
            }
        }
    }
    EXPECT_EQ(automation::viewOf(given), u"given");
    SysFreeString(given);
    EXPECT_EQ(text(kTitleGet), u"Title");
}

TEST_F(RawStub, AnswersItsFields) {
    EXPECT_EQ(text(kTitleGet), u"Title");
    EXPECT_EQ(number(kMajor), 1);
    EXPECT_EQ(number(kMinor), 2);
    EXPECT_EQ(number(kRevision), 3);
}

TEST_F(RawStub, TitleIsReplacedByItsSet) {
    BSTR given = automation::newBstr(u"new");
    EXPECT_EQ(call(kTitlePut, given), S_OK);
    SysFreeString(given);
    EXPECT_EQ(text(kTitleGet), u"new");
    EXPECT_EQ(number(kMajor), 1);
}

TEST_F(RawStub, LoggingDoesNothing) {
    BSTR given = automation::newBstr(u"line");
    VARIANT event{};
    event.vt = VT_ERROR;
    event.scode = DISP_E_PARAMNOTFOUND;
    EXPECT_EQ(call(kStartLogging, given, LONG{1}), S_OK);
    EXPECT_EQ(call(kLogEvent, given, event), S_OK);
    SysFreeString(given);
    EXPECT_EQ(text(kTitleGet), u"Title");
}

TEST_F(RawStub, InterfacePointerIsTheObjectsIdentityAndDispatch) {
    auto* unknown = reinterpret_cast<IUnknown*>(header_);
    for (const IID& iid : {IID_IUnknown, IID_IDispatch, kHostApplicationInterface}) {
        void* found = nullptr;
        ASSERT_EQ(unknown->QueryInterface(iid, &found), S_OK);
        EXPECT_EQ(found, header_);
        static_cast<IUnknown*>(found)->Release();
    }
}

TEST_F(RawStub, HasNoTypeInformation) {
    ITypeInfo* info = nullptr;
    auto* dispatch = reinterpret_cast<IDispatch*>(header_);
    EXPECT_NE(dispatch->GetTypeInfo(0, LOCALE_USER_DEFAULT, &info), S_OK);
    EXPECT_EQ(info, nullptr);
}

TEST(CAppStub, NewOneIsEmpty) {
    const auto stub = make<CAppStub>();
    EXPECT_EQ(stub->Title(), u"");
    EXPECT_EQ(stub->Major(), 0);
    EXPECT_EQ(stub->Minor(), 0);
    EXPECT_EQ(stub->Revision(), 0);
}

TEST(CAppStub, InitFillsTheFieldsAnew) {
    const auto stub = make<CAppStub>();
    stub->Init(u"a", 1, 2, 3);
    stub->Init(u"b", -32768, 32767, 0);
    EXPECT_EQ(stub->Title(), u"b");
    EXPECT_EQ(stub->Major(), -32768);
    EXPECT_EQ(stub->Minor(), 32767);
    EXPECT_EQ(stub->Revision(), 0);
}

TEST(CAppStub, AnswersByName) {
    const auto stub = make<CAppStub>();
    stub->Init(u"Painter", 3, 4, 5);
    const Object object = stub->asObject();
    EXPECT_EQ(*object.get(u"Title").as<WString>(), u"Painter");
    EXPECT_EQ(*object.get(u"revision").as<std::int16_t>(), 5);
    EXPECT_EQ(*object.get(u"Comments").as<WString>(), u"");
    EXPECT_EQ(*object.get(u"hInstance").as<std::int32_t>(), 0);
    EXPECT_EQ(*object.get(u"PrevInstance").as<bool>(), false);
    object.put(u"Title", Variant(u"other"));
    object.put(u"HelpFile", Variant(u"help"));
    EXPECT_EQ(*object.get(u"Title").as<WString>(), u"other");
    EXPECT_EQ(*object.get(u"HelpFile").as<WString>(), u"");
    object.call(u"StartLogging", {Variant(u"file"), Variant(1)});
    object.call(u"LogEvent", {Variant(u"line")});
    EXPECT_EQ(raisedBy([&] { object.put(u"Major", Variant(1)); }), error::kNoSuchMember);
    EXPECT_EQ(raisedBy([&] { object.call(u"Init", {}); }), error::kNoSuchMember);
}

TEST(HostApplication, ReadsAStubThroughTheInterface) {
    const auto stub = make<CAppStub>();
    stub->Init(u"Painter", 3, -4, 32767);
    const HostApplication application(stub->asObject());
    EXPECT_EQ(application.Title(), u"Painter");
    EXPECT_EQ(application.Major(), 3);
    EXPECT_EQ(application.Minor(), -4);
    EXPECT_EQ(application.Revision(), 32767);
}

/// An application object that no code of the library made: a vtable filled slot by slot.
class ForeignApplication {
public:
    ForeignApplication() {
        const auto put = [](std::size_t slot, auto* function) {
            slots_[slot] = reinterpret_cast<void (*)()>(function);
        };
        slots_.fill(reinterpret_cast<void (*)()>(&notExpected));
        put(0, &queryInterface);
        put(1, &addRef);
        put(2, &release);
        put(kDispatchSlots + kTitleGet, &title);
        put(kDispatchSlots + kMajor, &numberSlot<11>);
        put(kDispatchSlots + kMinor, &numberSlot<22>);
        put(kDispatchSlots + kRevision, &failing);
    }

    Object object() { return Object(reinterpret_cast<IUnknown*>(this)); }
    LONG references() const { return references_; }
    void hideInterface() { hasInterface_ = false; }

private:
    using Self = ForeignApplication;

    static HRESULT STDMETHODCALLTYPE queryInterface(Self* self, const IID* iid, void** object) {
        *object = nullptr;
        if (!(*iid == kHostApplicationInterface) || !self->hasInterface_) return E_NOINTERFACE;
        ++self->references_;
        *object = self;
        return S_OK;
    }
    static ULONG STDMETHODCALLTYPE addRef(Self* self) {
        return static_cast<ULONG>(++self->references_);
    }
    static ULONG STDMETHODCALLTYPE release(Self* self) {
        return static_cast<ULONG>(--self->references_);
    }
    static HRESULT STDMETHODCALLTYPE title(Self*, BSTR* result) {
        *result = automation::newBstr(u"Foreign");
        return S_OK;
    }
    template <SHORT number>
    static HRESULT STDMETHODCALLTYPE numberSlot(Self*, SHORT* result) {
        *result = number;
        return S_OK;
    }
    static HRESULT STDMETHODCALLTYPE failing(Self*, SHORT*) {
        return static_cast<HRESULT>(0x800A0000U | error::kPermissionDenied);
    }
    static void notExpected() { std::abort(); }

    inline static std::array<void (*)(), kDispatchSlots + kSlots.size()> slots_{};
    // The object's address is the interface pointer, so the vtable comes first.
    [[maybe_unused]] void (**vtable_)() = slots_.data();
    LONG references_ = 0;
    bool hasInterface_ = true;
};

TEST(HostApplication, ReadsAForeignObjectBySlot) {
    ForeignApplication foreign;
    static_assert(!std::is_polymorphic_v<ForeignApplication>);
    {
        const HostApplication application(foreign.object());
        EXPECT_EQ(application.Title(), u"Foreign");
        EXPECT_EQ(application.Major(), 11);
        EXPECT_EQ(application.Minor(), 22);
        EXPECT_EQ(raisedBy([&] { application.Revision(); }), error::kPermissionDenied);
        EXPECT_EQ(foreign.references(), 1);
    }
    EXPECT_EQ(foreign.references(), 0);
}

TEST(HostApplication, NothingRaises91) {
    EXPECT_EQ(raisedBy([] { HostApplication{Object()}; }), error::kObjectNotSet);
}

TEST(HostApplication, ObjectWithoutTheInterfaceRaises13) {
    ForeignApplication foreign;
    foreign.hideInterface();
    EXPECT_EQ(raisedBy([&] { HostApplication{foreign.object()}; }), error::kTypeMismatch);
    EXPECT_EQ(foreign.references(), 0);
}

}  // namespace
}  // namespace orvane

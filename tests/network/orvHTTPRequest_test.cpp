#include "network/orvHTTPRequest.h"

#include "application/fake_application.h"
#include "frame/automation/table.h"
#include "network/UserAgent.h"
#include "support/raised_error.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>

namespace orvane {
namespace {

using test::raisedBy;

class Request : public testing::Test {
protected:
    Ref<orvHTTPRequest> request_ = make<orvHTTPRequest>();
    Object late_ = request_->asObject();
};

TEST_F(Request, IsEmptyWhenNew) {
    EXPECT_EQ(request_->HTTPRequest(), u"");
    EXPECT_EQ(request_->HTTPResponse(), u"");
    EXPECT_EQ(request_->ResponseCode(), 0);
    EXPECT_EQ(request_->ResponseText(), u"");
    EXPECT_EQ(request_->ErrorCode(), 0);
    EXPECT_EQ(request_->ErrorText(), u"");
    EXPECT_EQ(request_->ReceivedData(), u"");
    EXPECT_EQ(request_->LastRC(), htprExecuteError::htprSuccess);
    EXPECT_FALSE(request_->ProxySettings()) << "Nothing";
    EXPECT_EQ(request_->BufferSize(), 1024);
    EXPECT_EQ(request_->CookiesIn(), u"");
    EXPECT_EQ(request_->CookiesOut(), u"");
}

TEST_F(Request, WithoutAResponseIsAnError) {
    EXPECT_TRUE(request_->IsError()) << "the status 0 is neither 200 nor 201";
}

TEST_F(Request, BufferSizeZeroRaises5) {
    EXPECT_EQ(raisedBy([&] { request_->putBufferSize(0); }), error::kInvalidArgument);
    EXPECT_EQ(request_->BufferSize(), 1024);
}

TEST_F(Request, BufferSizeIsAnyNumberAboveZero) {
    for (const std::int32_t size : {1, 4096, std::numeric_limits<std::int32_t>::max()}) {
        request_->putBufferSize(size);
        EXPECT_EQ(request_->BufferSize(), size);
        for (const std::int32_t refused : {-1, std::numeric_limits<std::int32_t>::min()}) {
            EXPECT_EQ(raisedBy([&] { request_->putBufferSize(refused); }), error::kInvalidArgument);
            EXPECT_EQ(request_->BufferSize(), size);
        }
    }
}

TEST_F(Request, ClearLeavesCookiesBufferAndProxy) {
    request_->putBufferSize(7);
    request_->putCookiesIn(u"a=1");
    const auto proxy = make<ProxySettings>();
    request_->putProxySettings(proxy);
    request_->Clear();
    EXPECT_EQ(request_->BufferSize(), 7);
    EXPECT_EQ(request_->CookiesIn(), u"a=1");
    EXPECT_EQ(request_->ProxySettings(), proxy);
}

TEST_F(Request, KeepsItsProxyByValueAndByReference) {
    const auto proxy = make<ProxySettings>();
    late_.put(u"ProxySettings", proxy->asObject());
    EXPECT_EQ(request_->ProxySettings(), proxy);
    EXPECT_TRUE(late_.get(u"ProxySettings").as<Object>()->is(proxy->asObject()));
    late_.putReference(u"ProxySettings", Object());
    EXPECT_FALSE(request_->ProxySettings());
    EXPECT_TRUE(late_.get(u"ProxySettings").as<Object>()->isNothing());
    late_.putReference(u"ProxySettings", proxy->asObject());
    EXPECT_EQ(request_->ProxySettings(), proxy);
    late_.put(u"ProxySettings", Object());
    EXPECT_FALSE(request_->ProxySettings());
}

TEST_F(Request, TakesNoOtherObjectForAProxy) {
    EXPECT_EQ(raisedBy([&] { late_.putReference(u"ProxySettings", late_); }), error::kTypeMismatch);
    EXPECT_EQ(raisedBy([&] { late_.put(u"ProxySettings", 5); }), error::kObjectRequired);
    EXPECT_FALSE(request_->ProxySettings());
}

TEST_F(Request, HasTheTwoHeadersOfEveryRequest) {
    EXPECT_EQ(request_->DefaultHTTPHeaders(), u"Accept: */*\r\nX-Devote-To: Illis ^_^!\r\n");
}

TEST_F(Request, CookiesInIsReadAndWritten) {
    late_.put(u"CookiesIn", u"a=1; ");
    EXPECT_EQ(*late_.get(u"CookiesIn").as<WString>(), u"a=1; ");
    EXPECT_EQ(raisedBy([&] { late_.put(u"CookiesOut", u"a"); }), error::kNoSuchMember)
        << "read-only";
}

TEST_F(Request, CarriesTheCookiesOfOneExchangeToTheNext) {
    EXPECT_EQ(*late_.call(u"GetFormattedCookies", {u"a=1; path=/\r\n"}).as<WString>(), u"a=1; ");
}

TEST_F(Request, CracksAURLIntoTheCallersVariables) {
    Variant protocol;
    Variant address;
    Variant port;
    Variant objectName;
    const Variant result =
        late_.call(u"CrackURL", {u"http://host:8080/x", Variant::reference(protocol),
                                 Variant::reference(address), Variant::reference(port),
                                 Variant::reference(objectName)});
    EXPECT_EQ(*result.as<bool>(), true);
    EXPECT_EQ(*protocol.as<WString>(), u"http://");
    EXPECT_EQ(*address.as<WString>(), u"host");
    EXPECT_EQ(*port.as<std::int32_t>(), 8080);
    EXPECT_EQ(*objectName.as<WString>(), u"/x");
}

TEST_F(Request, CracksAURLWithAnyOutputLeftOut) {
    EXPECT_EQ(*late_.call(u"CrackURL", {u"http://host"}).as<bool>(), true);
    EXPECT_EQ(*late_.call(u"CrackURL", {u"host"}).as<bool>(), false);
    Variant port;
    late_.call(u"CrackURL", {u"http://host:9", Variant::missing(), Variant::missing(),
                             Variant::reference(port)});
    EXPECT_EQ(*port.as<std::int32_t>(), 9);
}

TEST_F(Request, CracksTheURLThatAnOutputHolds) {
    Variant text = u"http://host/x";
    const Variant result = late_.call(
        u"CrackURL", {Variant::reference(text), Variant::missing(), Variant::reference(text)});
    EXPECT_EQ(*result.as<bool>(), true);
    EXPECT_EQ(*text.as<WString>(), u"host");
}

TEST_F(Request, BuildsAUserAgentOfTheApplication) {
    test::FakeApplication host(u"Ёж", 1, 2, 3);
    EXPECT_EQ(*late_.call(u"BuildUserAgent", {host.object()}).as<WString>(),
              BuildUserAgentString(u"Ёж", 1, 2, 3));
    EXPECT_EQ(raisedBy([&] { late_.call(u"BuildUserAgent", {Variant(Object())}); }),
              error::kObjectNotSet);
}

TEST_F(Request, BuildsAFormAndItsHeader) {
    Variant headers = u"X: y";
    const Variant pairs = Array<Variant>::of({u"a", 1});
    const Variant form = late_.call(u"BuildForm", {Variant::reference(headers), pairs});
    EXPECT_TRUE(form.as<WString>()->view().ends_with(
        u"name=\"a\"\r\n\r\n1\r\n--EEDBA9E2-7BCD-44F8-8E15-F0314AF5AB43--"));
    EXPECT_TRUE(headers.as<WString>()->view().starts_with(u"X: y\r\nContent-Type: multipart/"));
    EXPECT_EQ(
        raisedBy([&] {
            late_.call(u"BuildForm", {Variant::reference(headers), Variant(Array<Variant>())});
        }),
        error::kSubscriptOutOfRange);
}

TEST_F(Request, DoesNotCarryOutExchangesYet) {
    EXPECT_EQ(raisedBy([&] { late_.call(u"Execute", {u"host"}); }), error::kActionNotSupported);
    EXPECT_EQ(raisedBy([&] { late_.call(u"Execute"); }), error::kArgumentNotOptional);
    EXPECT_EQ(request_->LastRC(), htprExecuteError::htprSuccess);
}

TEST_F(Request, TakesAnyObjectForACallback) {
    const auto raisedWith = [&](const Variant& callback) {
        const Variant none = Variant::missing();
        return raisedBy([&] {
            late_.call(u"Execute",
                       {u"host", none, none, none, none, none, none, none, none, none, callback});
        });
    };
    test::FakeApplication host(u"", 0, 0);
    EXPECT_EQ(raisedWith(host.object()), error::kActionNotSupported) << "a script's own";
    EXPECT_EQ(host.references(), 0U);
    EXPECT_EQ(raisedWith(make<IHTTPRequestCallback>()->asObject()), error::kActionNotSupported);
    EXPECT_EQ(raisedWith(Variant(Object())), error::kActionNotSupported);
    EXPECT_EQ(raisedWith(5), error::kObjectRequired);
}

TEST(RequestCallback, DoesNothingByItself) {
    const auto callback = make<IHTTPRequestCallback>();
    const Object late = callback->asObject();
    Variant remove = true;
    Variant cancel = false;
    late.call(u"BlockReceived",
              {u"block", Variant::reference(remove), 5, 10, Variant::reference(cancel)});
    EXPECT_EQ(*remove.as<bool>(), true);
    EXPECT_EQ(*cancel.as<bool>(), false);
    late.call(u"BlockSent", {u"block", 5, 10, Variant::reference(cancel)});
    EXPECT_EQ(*cancel.as<bool>(), false);
}

TEST(RequestTable, TellsTheNoteOnExecute) {
    const automation::ClassTable& table = orvHTTPRequest::table();
    const automation::Member* execute =
        table.find(table.idOf(u"execute"), automation::MemberKind::method);
    ASSERT_NE(execute, nullptr);
    EXPECT_EQ(WStringView(execute->help), u"Внимание! Не рекомендуется совмещать сжатие и выборку "
                                          u"данных по мере получения!");
}

}  // namespace
}  // namespace orvane

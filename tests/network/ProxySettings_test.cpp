#include "network/ProxySettings.h"

#include "network/any_unit.h"
#include "support/raised_error.h"

#include <gtest/gtest.h>

#include <limits>

namespace orvane {
namespace {

using enum psAccessType;
using test::raisedBy;

class Proxy : public testing::Test {
protected:
    Ref<ProxySettings> proxy_ = make<ProxySettings>();

    WString bypassList(WStringView list, bool local) {
        proxy_->putHTTP_BypassList(list);
        proxy_->putHTTP_BypassLocal(local);
        return proxy_->GetBypassList();
    }
};

TEST_F(Proxy, IsEmptyWhenNew) {
    EXPECT_EQ(proxy_->HTTP_AccessType(), psatPreconfigByIE);
    EXPECT_EQ(proxy_->HTTP_Address(), u"");
    EXPECT_EQ(proxy_->HTTP_UserName(), u"");
    EXPECT_EQ(proxy_->HTTP_Password(), u"");
    EXPECT_EQ(proxy_->HTTP_BypassList(), u"");
    EXPECT_FALSE(proxy_->HTTP_BypassLocal());
}

TEST_F(Proxy, KeepsWhatItIsGiven) {
    proxy_->putHTTP_AccessType(psatProxy);
    proxy_->putHTTP_Address(u"proxy:3128");
    proxy_->putHTTP_UserName(u"user");
    proxy_->putHTTP_Password(u"secret");
    proxy_->putHTTP_BypassList(u"*.local");
    proxy_->putHTTP_BypassLocal(true);
    EXPECT_EQ(proxy_->HTTP_AccessType(), psatProxy);
    EXPECT_EQ(proxy_->HTTP_Address(), u"proxy:3128");
    EXPECT_EQ(proxy_->HTTP_UserName(), u"user");
    EXPECT_EQ(proxy_->HTTP_Password(), u"secret") << "in clear while in the object";
    EXPECT_EQ(proxy_->HTTP_BypassList(), u"*.local");
    EXPECT_TRUE(proxy_->HTTP_BypassLocal());
}

TEST_F(Proxy, AccessTypeTwoReadsBackAsZero) {
    proxy_->putHTTP_AccessType(psatProxy);
    proxy_->putHTTP_AccessType(static_cast<psAccessType>(2));
    EXPECT_EQ(proxy_->HTTP_AccessType(), psatPreconfigByIE);
}

TEST_F(Proxy, KnowsThreeAccessTypes) {
    for (const std::int32_t value : {0, 1, 2, 3, 4, -1, std::numeric_limits<std::int32_t>::max(),
                                     std::numeric_limits<std::int32_t>::min()}) {
        proxy_->putHTTP_AccessType(psatDirect);
        proxy_->putHTTP_AccessType(static_cast<psAccessType>(value));
        const bool known = value == 0 || value == 1 || value == 3;
        EXPECT_EQ(static_cast<std::int32_t>(proxy_->HTTP_AccessType()), known ? value : 0);
    }
}

TEST_F(Proxy, ProxyNameIsTheAddressOrANullString) {
    EXPECT_TRUE(proxy_->GetProxyName().isNull());
    proxy_->putHTTP_Address(u"proxy:3128");
    EXPECT_EQ(proxy_->GetProxyName(), u"proxy:3128");
    EXPECT_FALSE(proxy_->GetProxyName().isNull());
    proxy_->putHTTP_Address(u"");
    EXPECT_TRUE(proxy_->GetProxyName().isNull());
}

TEST_F(Proxy, BypassListThatNamesTheLocalNetworkStays) {
    EXPECT_EQ(bypassList(u"A <LOCAL>", true), u"A <LOCAL>");
    EXPECT_EQ(bypassList(u"x<lOcAl>y", true), u"x<lOcAl>y");
}

TEST_F(Proxy, EmptyBypassListIsTheLocalNetworkAlone) {
    EXPECT_EQ(bypassList(u"", true), u"<local>");
    EXPECT_EQ(bypassList({}, true), u"<local>");
}

TEST_F(Proxy, LocalNetworkGoesBehindABlank) {
    EXPECT_EQ(bypassList(u"*.a b", true), u"*.a b <local>");
    EXPECT_EQ(bypassList(u" ", true), u"  <local>");
    EXPECT_EQ(bypassList(u"<local", true), u"<local <local>");
    EXPECT_EQ(proxy_->HTTP_BypassList(), u"<local") << "the object's own list stays";
}

TEST_F(Proxy, BypassListStaysWithoutBypassLocal) {
    EXPECT_EQ(bypassList(u"A <local>", false), u"A <local>");
    EXPECT_EQ(bypassList(u"A", false), u"A");
}

TEST_F(Proxy, BypassListIsNeverNull) {
    EXPECT_FALSE(proxy_->GetBypassList().isNull());
    EXPECT_FALSE(bypassList({}, false).isNull());
    EXPECT_EQ(bypassList({}, false), u"");
}

TEST_F(Proxy, TakesAMebiOfAnything) {
    const std::u16string any = test::anyUnits(test::kMebi, u"<LOCAL ");
    EXPECT_EQ(bypassList(any, true).units(), any + u" <local>");
    EXPECT_EQ(bypassList(any + u"<Local>", true).units(), any + u"<Local>");
}

TEST_F(Proxy, HasNoDialogYet) {
    EXPECT_EQ(raisedBy([&] { proxy_->HTTP_ShowConfigDialog(); }), error::kActionNotSupported);
}

TEST_F(Proxy, WorksLateBound) {
    const Object late = proxy_->asObject();
    late.put(u"HTTP_AccessType", u"3");
    EXPECT_EQ(*late.get(u"HTTP_AccessType").as<std::int32_t>(), 3);
    late.put(u"HTTP_AccessType", 2);
    EXPECT_EQ(*late.get(u"HTTP_AccessType").as<std::int32_t>(), 0);
    late.put(u"HTTP_BypassLocal", 1);
    EXPECT_EQ(*late.get(u"HTTP_BypassLocal").as<bool>(), true);
    late.put(u"HTTP_Password", 12);
    EXPECT_EQ(*late.get(u"HTTP_Password").as<WString>(), u"12");
    EXPECT_EQ(raisedBy([&] { late.call(u"GetProxyName"); }), error::kNoSuchMember)
        << "not for hosts";
    EXPECT_EQ(raisedBy([&] { late.call(u"GetBypassList"); }), error::kNoSuchMember);
}

}  // namespace
}  // namespace orvane

#include "network/orvHTTPRequest.h"

#include "network/BuildForm.h"
#include "network/Cookies.h"
#include "network/CrackURL.h"
#include "network/UserAgent.h"

namespace orvane {
namespace {

constexpr std::int32_t kStatusOk = 200;
constexpr std::int32_t kStatusCreated = 201;

}  // namespace

orvHTTPRequest::orvHTTPRequest() : AutomationObject(table()) {}

void orvHTTPRequest::putProxySettings(const Ref<orvane::ProxySettings>& value) {
    proxySettings_ = value;
}

bool orvHTTPRequest::IsError() const {
    if (lastRC_ != htprExecuteError::htprSuccess) return true;
    return responseCode_ != kStatusOk && responseCode_ != kStatusCreated;
}

bool orvHTTPRequest::CrackURL(WStringView url, WString& protocol, WString& address,
                              std::int32_t& port, WString& objectName) {
    return orvane::CrackURL(url, protocol, address, port, objectName);
}

WString orvHTTPRequest::DefaultHTTPHeaders() const {
    return u"Accept: */*\r\nX-Devote-To: Illis ^_^!\r\n";
}

void orvHTTPRequest::Clear() {
    request_ = u"";
    response_ = u"";
    responseCode_ = 0;
    responseText_ = u"";
    errorCode_ = 0;
    errorText_ = u"";
    receivedData_ = u"";
}

WString orvHTTPRequest::BuildUserAgent(const Object& app) {
    return orvane::BuildUserAgent(app);
}

htprExecuteError orvHTTPRequest::Execute(WStringView, std::int32_t, WStringView, WStringView,
                                         WStringView, WStringView, WStringView, WStringView,
                                         std::int32_t, WStringView,
                                         const automation::Implementer<IHTTPRequestCallback>&, bool,
                                         bool, bool, bool, WStringView, WStringView, bool) {
    raise(error::kActionNotSupported);
}

WString orvHTTPRequest::BuildForm(WString& headersToUpdate, Array<Variant>& arguments) {
    return orvane::BuildForm(headersToUpdate, arguments);
}

void orvHTTPRequest::putBufferSize(std::int32_t value) {
    if (value <= 0) raise(error::kInvalidArgument);
    bufferSize_ = value;
}

void orvHTTPRequest::putCookiesIn(WStringView value) {
    cookiesIn_ = WString(value);
}

WString orvHTTPRequest::GetFormattedCookies(WStringView cookies) {
    return orvane::GetFormattedCookies(cookies);
}

}  // namespace orvane

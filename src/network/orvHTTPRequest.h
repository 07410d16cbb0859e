#pragma once

#include "frame/automation/automation_object.h"
#include "frame/automation/implementer.h"
#include "network/IHTTPRequestCallback.h"
#include "network/ProxySettings.h"

namespace orvane {

/// What became of an `Execute`.
enum class htprExecuteError : std::int32_t {
    htprSuccess = 0,
    htprInternetOpenFailed = 1,
    htprInternetConnectFailed = 2,
    htprHttpOpenRequestFailed = 3,
    htprHttpSendRequestFailed = 4,
    htprHttpSendRequestExFailed = 5,
    htprInternetWriteFileFailed = 6,
    htprHttpEndRequestFailed = 7,
    htprInternetReadFileFailed = 8,
    htprCanceled = 9,
    htprInternetSetOptionFailed_ProxyUserName = 10,
    htprInternetSetOptionFailed_ProxyPassword = 11,
    htprInternetSetOptionFailed_ServerUserName = 12,
    htprInternetSetOptionFailed_ServerPassword = 13,
    htprInvalidGZipContent = 14,
};
const automation::EnumTable& enumTable(htprExecuteError);

/// One HTTP exchange at a time, from a single blocking call, with what is told of it in properties,
/// and the text work around it. This version has the text work; `Execute` raises 445.
class orvHTTPRequest final : public automation::AutomationObject {
public:
    static const automation::ClassTable& table();

    orvHTTPRequest();

    /// The proxy to go through; with Nothing, the system's own configuration.
    const Ref<orvane::ProxySettings>& ProxySettings() const { return proxySettings_; }
    void putProxySettings(const Ref<orvane::ProxySettings>& value);

    /// True unless the last exchange went through and was answered with the status 200 or 201. An
    /// object that has had none has no such answer.
    bool IsError() const;
    htprExecuteError LastRC() const { return lastRC_; }

    /// See CrackURL.h.
    bool CrackURL(WStringView url, WString& protocol, WString& address, std::int32_t& port,
                  WString& objectName);
    /// The header lines that every request has.
    WString DefaultHTTPHeaders() const;

    /// Raw request and response headers.
    const WString& HTTPRequest() const { return request_; }
    const WString& HTTPResponse() const { return response_; }
    /// The numeric status and its text.
    std::int32_t ResponseCode() const { return responseCode_; }
    const WString& ResponseText() const { return responseText_; }
    /// The system's code of the last failure, or 0, and its text.
    std::int32_t ErrorCode() const { return errorCode_; }
    const WString& ErrorText() const { return errorText_; }
    /// The body, a byte string.
    const WString& ReceivedData() const { return receivedData_; }

    /// Forgets headers, status, error and body. The result code, cookies, block size and proxy
    /// stay.
    void Clear();
    /// See UserAgent.h.
    WString BuildUserAgent(const Object& app);

    htprExecuteError Execute(WStringView address, std::int32_t port, WStringView httpVerb,
                             WStringView objectName, WStringView httpVersion, WStringView referer,
                             WStringView additionalHeaders, WStringView optionalData,
                             std::int32_t timeout, WStringView userAgent,
                             const automation::Implementer<IHTTPRequestCallback>& callback,
                             bool noAutoRedirects, bool noCookies, bool dontReadFromCache,
                             bool noWriteToCache, WStringView serverUserName,
                             WStringView serverPassword, bool disableGZip);

    /// See BuildForm.h.
    WString BuildForm(WString& headersToUpdate, Array<Variant>& arguments);

    /// The size of a block, in bytes and characters. Raises 5 for a size of 0 or less.
    std::int32_t BufferSize() const { return bufferSize_; }
    void putBufferSize(std::int32_t value);

    /// The value of the `Cookie` header of the next exchange, without the header's name.
    const WString& CookiesIn() const { return cookiesIn_; }
    void putCookiesIn(WStringView value);
    /// The `Set-Cookie` values of the last response, each with CR LF behind it.
    const WString& CookiesOut() const { return cookiesOut_; }
    /// See Cookies.h.
    WString GetFormattedCookies(WStringView cookies);

private:
    WString request_;
    WString response_;
    std::int32_t responseCode_ = 0;
    WString responseText_;
    std::int32_t errorCode_ = 0;
    WString errorText_;
    WString receivedData_;
    htprExecuteError lastRC_ = htprExecuteError::htprSuccess;
    Ref<orvane::ProxySettings> proxySettings_;
    std::int32_t bufferSize_ = 1024;
    WString cookiesIn_;
    WString cookiesOut_;
};

}  // namespace orvane

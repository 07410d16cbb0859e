#include "network/orvHTTPRequest.h"

#include "frame/automation/array_argument.h"
#include "frame/automation/describe.h"

namespace orvane {
namespace {

using Builder = automation::ClassBuilder<orvHTTPRequest>;

void addExecute(Builder& builder) {
    using automation::optional;
    builder
        .method<&orvHTTPRequest::Execute>("Execute", {"Address",
                                                      {"Port", 80},
                                                      {"HTTPVerb", u"GET"},
                                                      {"ObjectName", u"/"},
                                                      {"HTTPVersion", u"HTTP/1.1"},
                                                      {"Referer", u""},
                                                      {"AdditionalHeaders", u""},
                                                      {"OptionalData", u""},
                                                      {"Timeout", 30000},
                                                      {"UserAgent", u""},
                                                      optional("Callback"),
                                                      {"NoAutoRedirects", false},
                                                      {"NoCookies", false},
                                                      {"DontReadFromCache", true},
                                                      {"NoWriteToCache", true},
                                                      {"ServerUserName", u""},
                                                      {"ServerPassword", u""},
                                                      {"DisableGZip", false}})
        .help(u"Внимание! Не рекомендуется совмещать сжатие и выборку данных по мере получения!");
}

automation::ClassTable describe() {
    using automation::optional;
    Builder builder("orvHTTPRequest", automation::Instancing::creatable,
                    {0x5B53974C, 0xDCE6, 0x474C, {0x97, 0xC5, 0x99, 0x53, 0x20, 0x88, 0x93, 0x93}},
                    {0xB3B6597F, 0xA95A, 0x4615, {0xB8, 0x07, 0xE3, 0xF0, 0x28, 0x40, 0xBB, 0x55}});
    builder.propertyGet<&orvHTTPRequest::ProxySettings>("ProxySettings")
        .propertyPut<&orvHTTPRequest::putProxySettings>("ProxySettings", {"Value"})
        .propertyPutReference<&orvHTTPRequest::putProxySettings>("ProxySettings", {"Value"})
        .propertyGet<&orvHTTPRequest::IsError>("IsError")
        .propertyGet<&orvHTTPRequest::LastRC>("LastRC")
        .method<&orvHTTPRequest::CrackURL>("CrackURL",
                                           {"URL", optional("Protocol"), optional("Address"),
                                            optional("Port"), optional("ObjectName")})
        .propertyGet<&orvHTTPRequest::DefaultHTTPHeaders>("DefaultHTTPHeaders")
        .propertyGet<&orvHTTPRequest::HTTPRequest>("HTTPRequest")
        .propertyGet<&orvHTTPRequest::HTTPResponse>("HTTPResponse")
        .propertyGet<&orvHTTPRequest::ResponseCode>("ResponseCode")
        .propertyGet<&orvHTTPRequest::ResponseText>("ResponseText")
        .propertyGet<&orvHTTPRequest::ErrorCode>("ErrorCode")
        .propertyGet<&orvHTTPRequest::ErrorText>("ErrorText")
        .propertyGet<&orvHTTPRequest::ReceivedData>("ReceivedData")
        .method<&orvHTTPRequest::Clear>("Clear")
        .method<&orvHTTPRequest::BuildUserAgent>("BuildUserAgent", {"App"});
    addExecute(builder);
    builder.method<&orvHTTPRequest::BuildForm>("BuildForm", {"HeadersToUpdate", "Arguments"})
        .propertyGet<&orvHTTPRequest::BufferSize>("BufferSize")
        .propertyPut<&orvHTTPRequest::putBufferSize>("BufferSize", {"Value"})
        .propertyGet<&orvHTTPRequest::CookiesIn>("CookiesIn")
        .propertyPut<&orvHTTPRequest::putCookiesIn>("CookiesIn", {"Value"})
        .propertyGet<&orvHTTPRequest::CookiesOut>("CookiesOut")
        .method<&orvHTTPRequest::GetFormattedCookies>("GetFormattedCookies", {"Cookies"});
    return builder.build();
}

}  // namespace

const automation::EnumTable& enumTable(htprExecuteError) {
    static const automation::EnumTable& table = automation::permanent<automation::EnumTable>([] {
        return automation::EnumTable{"htprExecuteError",
                                     {{"htprSuccess", 0},
                                      {"htprInternetOpenFailed", 1},
                                      {"htprInternetConnectFailed", 2},
                                      {"htprHttpOpenRequestFailed", 3},
                                      {"htprHttpSendRequestFailed", 4},
                                      {"htprHttpSendRequestExFailed", 5},
                                      {"htprInternetWriteFileFailed", 6},
                                      {"htprHttpEndRequestFailed", 7},
                                      {"htprInternetReadFileFailed", 8},
                                      {"htprCanceled", 9},
                                      {"htprInternetSetOptionFailed_ProxyUserName", 10},
                                      {"htprInternetSetOptionFailed_ProxyPassword", 11},
                                      {"htprInternetSetOptionFailed_ServerUserName", 12},
                                      {"htprInternetSetOptionFailed_ServerPassword", 13},
                                      {"htprInvalidGZipContent", 14}}};
    });
    return table;
}

const automation::ClassTable& orvHTTPRequest::table() {
    static const automation::ClassTable& table = automation::classTable(describe);
    return table;
}

}  // namespace orvane

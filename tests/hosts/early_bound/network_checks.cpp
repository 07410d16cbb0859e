#include "checks.h"

namespace orvane::tests::early_bound {
namespace {

constexpr std::int32_t kNotCarriedOut = 445;
constexpr const char16_t* kEmptyForm = u"--EEDBA9E2-7BCD-44F8-8E15-F0314AF5AB43--";

/// Calls a property that gives a text.
template <class Interface>
Text textOf(Library& library, Interface& object,
            HRESULT (STDMETHODCALLTYPE Interface::*property)(BSTR*)) {
    Text text;
    library.check((object.*property)(text.receive()));
    return text;
}

void checkResults(Library& library, _orvHTTPRequest& request) {
    const auto empty = [&](HRESULT (STDMETHODCALLTYPE _orvHTTPRequest::*property)(BSTR*),
                           const char* what) {
        expect(textOf(library, request, property) == u"", what);
    };
    empty(&_orvHTTPRequest::get_HTTPRequest, "HTTPRequest of a new object");
    empty(&_orvHTTPRequest::get_HTTPResponse, "HTTPResponse of a new object");
    empty(&_orvHTTPRequest::get_ResponseText, "ResponseText of a new object");
    empty(&_orvHTTPRequest::get_ErrorText, "ErrorText of a new object");
    empty(&_orvHTTPRequest::get_ReceivedData, "ReceivedData of a new object");
    empty(&_orvHTTPRequest::get_CookiesIn, "CookiesIn of a new object");
    empty(&_orvHTTPRequest::get_CookiesOut, "CookiesOut of a new object");
    LONG number = -1;
    library.check(request.get_ResponseCode(&number));
    expect(number == 0, "ResponseCode of a new object");
    number = -1;
    library.check(request.get_ErrorCode(&number));
    expect(number == 0, "ErrorCode of a new object");
    htprExecuteError code = htprCanceled;
    library.check(request.get_LastRC(&code));
    expect(code == htprSuccess, "LastRC of a new object");
    VARIANT_BOOL flag = VARIANT_FALSE;
    library.check(request.get_IsError(&flag));
    expect(flag == VARIANT_TRUE, "IsError of an object without a response");
    library.check(request.Clear());
}

void checkRequestText(Library& library, _orvHTTPRequest& request) {
    expect(textOf(library, request, &_orvHTTPRequest::get_DefaultHTTPHeaders) ==
               u"Accept: */*\r\nX-Devote-To: Illis ^_^!\r\n",
           "DefaultHTTPHeaders");
    Text protocol(u"former");
    Text address;
    Text objectName;
    LONG port = 0;
    VARIANT_BOOL flag = VARIANT_FALSE;
    library.check(request.CrackURL(Text(u"http://host:8080/a?b"), protocol.place(), address.place(),
                                   &port, objectName.place(), &flag));
    expect(flag == VARIANT_TRUE && protocol == u"http://" && address == u"host" && port == 8080 &&
               objectName == u"/a?b",
           "CrackURL");
    library.check(
        request.CrackURL(Text(u"host/path"), protocol.place(), nullptr, nullptr, nullptr, &flag));
    expect(flag == VARIANT_FALSE && protocol == u"http://", "CrackURL of no URL");
    expect(errorOf(library, request.BuildUserAgent(nullptr, address.receive())) == 91,
           "BuildUserAgent of Nothing raises 91");
    Text cookies;
    library.check(
        request.GetFormattedCookies(Text(u"a = 1; path=/\r\nb=2\r\n"), cookies.receive()));
    expect(cookies == u"a=1; b=2; ", "GetFormattedCookies");
    library.check(request.put_CookiesIn(cookies));
    expect(textOf(library, request, &_orvHTTPRequest::get_CookiesIn) == u"a=1; b=2; ",
           "CookiesIn as it was put");
    SAFEARRAY* none = nullptr;
    Text headers(u"X: y");
    Text form;
    expect(errorOf(library, request.BuildForm(headers.place(), &none, form.receive())) == 9,
           "BuildForm of an array without dimensions raises 9");
    expect(headers == u"X: y", "BuildForm leaves the headers when it fails");
}

void checkRequestSetUp(Library& library, _orvHTTPRequest& request) {
    LONG size = -1;
    library.check(request.get_BufferSize(&size));
    expect(size == 1024, "BufferSize of a new object");
    library.check(request.put_BufferSize(1));
    expect(errorOf(library, request.put_BufferSize(0)) == 5, "BufferSize 0 raises 5");
    library.check(request.get_BufferSize(&size));
    expect(size == 1, "BufferSize as it was put");

    const auto proxy = library.create<_ProxySettings>();
    Pointer<_ProxySettings> found;
    library.check(request.get_ProxySettings(found.receive()));
    expect(!found, "ProxySettings of a new object is Nothing");
    library.check(request.putref_ProxySettings(proxy.get()));
    library.check(request.get_ProxySettings(found.receive()));
    expect(found.get() == proxy.get(), "ProxySettings by reference");
    library.check(request.put_ProxySettings(nullptr));
    library.check(request.get_ProxySettings(found.receive()));
    expect(!found, "ProxySettings put to Nothing");
}

/// A host's own callback.
class Callback final : public _IHTTPRequestCallback {
public:
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override {
        *object = nullptr;
        if (!(iid == IID_IUnknown) && !(iid == IID_IDispatch) && !(iid == kInterfaceId)) {
            return E_NOINTERFACE;
        }
        AddRef();
        *object = static_cast<_IHTTPRequestCallback*>(this);
        return S_OK;
    }
    // It lives as long as its variable.
    ULONG STDMETHODCALLTYPE AddRef() override { return ++references; }
    ULONG STDMETHODCALLTYPE Release() override { return --references; }
    HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override {
        return DISP_E_UNKNOWNNAME;
    }
    HRESULT STDMETHODCALLTYPE Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS*, VARIANT*, EXCEPINFO*,
                                     UINT*) override {
        return DISP_E_MEMBERNOTFOUND;
    }
    HRESULT STDMETHODCALLTYPE BlockReceived(BSTR, VARIANT_BOOL*, LONG, LONG,
                                            VARIANT_BOOL*) override {
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE BlockSent(BSTR, LONG, LONG, VARIANT_BOOL*) override { return S_OK; }

    ULONG references = 0;
};

void checkExecute(Library& library, _orvHTTPRequest& request) {
    const Text text(u"text");
    Callback callback;
    htprExecuteError code = htprSuccess;
    const VARIANT_BOOL no = VARIANT_FALSE;
    const auto execute = [&](_IHTTPRequestCallback* given) {
        return errorOf(library,
                       request.Execute(text, 80, text, text, text, text, text, text, 30000, text,
                                       given, no, no, no, no, text, text, no, &code));
    };
    expect(execute(nullptr) == kNotCarriedOut, "Execute");
    expect(execute(&callback) == kNotCarriedOut && callback.references == 0,
           "Execute with a callback of the host");
}

void checkFormBuilder(Library& library) {
    const auto builder = library.create<_HTTPFormBuilder>();
    expect(textOf(library, *builder, &_HTTPFormBuilder::get_Header) ==
               u"Content-Type: multipart/form-data; "
               u"boundary=EEDBA9E2-7BCD-44F8-8E15-F0314AF5AB43\r\n",
           "Header");
    expect(textOf(library, *builder, &_HTTPFormBuilder::get_FormData) == kEmptyForm,
           "FormData of an empty form");
    library.check(builder->AddTextElement(Text(u"a"), Text(u"1")));
    library.check(builder->AddBinaryElement(Text(u"b"), Text(u"f"), Text(u"t"), Text(u"2")));
    library.check(
        builder->AddElement(Text(u"c"), Text(u"3"), htfbBase64, nullptr, Text(u"unused"), nullptr));
    expect(textOf(library, *builder, &_HTTPFormBuilder::get_FormData) ==
               u"--EEDBA9E2-7BCD-44F8-8E15-F0314AF5AB43\r\n"
               u"Content-Disposition: form-data; name=\"a\"\r\n\r\n1\r\n"
               u"--EEDBA9E2-7BCD-44F8-8E15-F0314AF5AB43\r\n"
               u"Content-Disposition: form-data; name=\"b\"; filename=\"f\"\r\nContent-Type: t\r\n"
               u"Content-Transfer-Encoding: binary\r\n\r\n2\r\n"
               u"--EEDBA9E2-7BCD-44F8-8E15-F0314AF5AB43\r\n"
               u"Content-Disposition: form-data; name=\"c\"\r\n"
               u"Content-Transfer-Encoding: base64\r\n\r\n3\r\n"
               u"--EEDBA9E2-7BCD-44F8-8E15-F0314AF5AB43--",
           "FormData of three elements");
    library.check(builder->Clear());
    expect(textOf(library, *builder, &_HTTPFormBuilder::get_FormData) == kEmptyForm,
           "FormData after Clear");
}

void checkProxySettings(Library& library) {
    const auto proxy = library.create<_ProxySettings>();
    library.check(proxy->put_HTTP_Password(Text(u"secret")));
    library.check(proxy->put_HTTP_UserName(Text(u"user")));
    library.check(proxy->put_HTTP_BypassLocal(VARIANT_TRUE));
    library.check(proxy->put_HTTP_BypassList(Text(u"*.a")));
    library.check(proxy->put_HTTP_Address(Text(u"proxy:3128")));
    library.check(proxy->put_HTTP_AccessType(psatProxy));
    const auto is = [&](HRESULT (STDMETHODCALLTYPE _ProxySettings::*property)(BSTR*),
                        const char16_t* text, const char* what) {
        expect(textOf(library, *proxy, property) == text, what);
    };
    is(&_ProxySettings::get_HTTP_Password, u"secret", "HTTP_Password");
    is(&_ProxySettings::get_HTTP_UserName, u"user", "HTTP_UserName");
    is(&_ProxySettings::get_HTTP_BypassList, u"*.a", "HTTP_BypassList");
    is(&_ProxySettings::get_HTTP_Address, u"proxy:3128", "HTTP_Address");
    VARIANT_BOOL flag = VARIANT_FALSE;
    library.check(proxy->get_HTTP_BypassLocal(&flag));
    expect(flag == VARIANT_TRUE, "HTTP_BypassLocal");
    psAccessType access = psatDirect;
    library.check(proxy->get_HTTP_AccessType(&access));
    expect(access == psatProxy, "HTTP_AccessType");
    library.check(proxy->put_HTTP_AccessType(static_cast<psAccessType>(2)));
    library.check(proxy->get_HTTP_AccessType(&access));
    expect(access == psatPreconfigByIE, "HTTP_AccessType 2 reads back as 0");
    expect(errorOf(library, proxy->HTTP_ShowConfigDialog()) == kNotCarriedOut,
           "HTTP_ShowConfigDialog");
    const std::int32_t saved = errorOf(
        library, proxy->HTTP_SaveProxySettings2(Text(u"key"), nullptr, VARIANT_TRUE, &flag));
    expect(saved == 91, "HTTP_SaveProxySettings2 without an application raises 91");
    const std::int32_t loaded = errorOf(
        library, proxy->HTTP_LoadProxySettings2(Text(u"key"), nullptr, VARIANT_TRUE, &flag));
    expect(loaded == 91, "HTTP_LoadProxySettings2 without an application raises 91");
}

}  // namespace

void checkNetwork(Library& library) {
    const auto request = library.create<_orvHTTPRequest>();
    checkResults(library, *request);
    checkRequestText(library, *request);
    checkRequestSetUp(library, *request);
    checkExecute(library, *request);
    checkFormBuilder(library);
    checkProxySettings(library);
}

}  // namespace orvane::tests::early_bound

#include "network/HTTPFormBuilder.h"

#include "frame/automation/describe.h"
#include "network/multipart.h"

namespace orvane {
namespace {

WStringView encodingLine(htfbTransferEncoding encoding) {
    switch (encoding) {
    case htfbTransferEncoding::htfbBinary:
        return u"Content-Transfer-Encoding: binary\r\n";
    case htfbTransferEncoding::htfbBase64:
        return u"Content-Transfer-Encoding: base64\r\n";
    case htfbTransferEncoding::htfbText:
        break;
    }
    return {};
}

}  // namespace

const automation::EnumTable& enumTable(htfbTransferEncoding) {
    static const automation::EnumTable& table = automation::permanent<automation::EnumTable>([] {
        return automation::EnumTable{"htfbTransferEncoding",
                                     {{"htfbText", 0}, {"htfbBinary", 1}, {"htfbBase64", 2}}};
    });
    return table;
}

const automation::ClassTable& HTTPFormBuilder::table() {
    static const automation::ClassTable& table = automation::classTable([] {
        using automation::optional;
        return automation::ClassBuilder<HTTPFormBuilder>(
                   "HTTPFormBuilder", automation::Instancing::creatable,
                   {0x2704112C, 0x1A50, 0x42E8, {0xA7, 0xEB, 0x1F, 0xA4, 0x3E, 0x73, 0xED, 0xDD}},
                   {0x7F4E8412, 0x9860, 0x4413, {0xA6, 0x9E, 0x14, 0xBD, 0x23, 0xEF, 0x90, 0x20}})
            .propertyGet<&HTTPFormBuilder::Header>("Header")
            .propertyGet<&HTTPFormBuilder::FormData>("FormData")
            .method<&HTTPFormBuilder::Clear>("Clear")
            .method<&HTTPFormBuilder::AddTextElement>("AddTextElement", {"Name", "Text"})
            .method<&HTTPFormBuilder::AddBinaryElement>("AddBinaryElement",
                                                        {"Name", "FileName", "MIMEType", "Data"})
            .method<&HTTPFormBuilder::AddElement>("AddElement", {"Name",
                                                                 "Data",
                                                                 {"TransferEncoding", 0},
                                                                 optional("MIMEType"),
                                                                 optional("Charset"),
                                                                 optional("FileName")})
            .build();
    });
    return table;
}

HTTPFormBuilder::HTTPFormBuilder() : AutomationObject(table()) {}

WString HTTPFormBuilder::Header() const {
    return WString(multipart::kHeader);
}

WString HTTPFormBuilder::FormData() const {
    std::u16string form;
    multipart::append(form, {form_, u"--", multipart::kBoundary, u"--"});
    return form;
}

void HTTPFormBuilder::Clear() {
    form_.clear();
}

void HTTPFormBuilder::AddTextElement(WStringView name, WStringView text) {
    AddElement(name, text, htfbTransferEncoding::htfbText, {}, {}, {});
}

void HTTPFormBuilder::AddBinaryElement(WStringView name, WStringView fileName, WStringView mimeType,
                                       WStringView data) {
    AddElement(name, data, htfbTransferEncoding::htfbBinary, mimeType, {}, fileName);
}

void HTTPFormBuilder::AddElement(WStringView name, WStringView data,
                                 htfbTransferEncoding transferEncoding, WStringView mimeType,
                                 WStringView charset, WStringView fileName) {
    using multipart::kLineEnd;
    std::u16string head;
    multipart::append(
        head, {u"--", multipart::kBoundary, kLineEnd, multipart::kDisposition, name, u"\""});
    if (!fileName.empty()) multipart::append(head, {u"; filename=\"", fileName, u"\""});
    multipart::append(head, {kLineEnd});
    if (!mimeType.empty()) {
        multipart::append(head, {u"Content-Type: ", mimeType});
        if (!charset.empty()) multipart::append(head, {u"; charset=", charset});
        multipart::append(head, {kLineEnd});
    }
    multipart::append(form_, {head, encodingLine(transferEncoding), kLineEnd, data, kLineEnd});
}

}  // namespace orvane

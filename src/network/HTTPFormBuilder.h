#pragma once

#include "frame/automation/automation_object.h"

namespace orvane {

/// How the data of a form's element is written, as its header line tells. The data itself is
/// written as given: whoever says base64 has encoded it.
enum class htfbTransferEncoding : std::int32_t {
    htfbText = 0,
    htfbBinary = 1,
    htfbBase64 = 2,
};
const automation::EnumTable& enumTable(htfbTransferEncoding);

/// Builds a `multipart/form-data` body, an element a call. `Header` belongs into the additional
/// headers of the request, `FormData` is its body. All forms have the same boundary; names, types
/// and data are written as given, without escapes.
class HTTPFormBuilder final : public automation::AutomationObject {
public:
    static const automation::ClassTable& table();

    HTTPFormBuilder();

    /// The `Content-Type` line of the request, with its line end; the same for every form.
    WString Header() const;
    /// The elements so far and the closing line, without a line end behind it. More elements can
    /// follow. Raises 7 when it would be longer than a text can be.
    WString FormData() const;
    /// Forgets the elements.
    void Clear();

    /// A plain element: a name and a text.
    void AddTextElement(WStringView name, WStringView text);
    /// A file: `data` is a byte string. An empty `fileName` leaves the file name out.
    void AddBinaryElement(WStringView name, WStringView fileName, WStringView mimeType,
                          WStringView data);
    /// An element with any of the header lines. An empty text leaves its part out, and a charset
    /// needs a type to stand behind. Encodings other than 1 and 2 have no line. Raises 7, and adds
    /// nothing, when the form would be longer than a text can be.
    void AddElement(WStringView name, WStringView data, htfbTransferEncoding transferEncoding,
                    WStringView mimeType, WStringView charset, WStringView fileName);

private:
    std::u16string form_;
};

}  // namespace orvane

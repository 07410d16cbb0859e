#pragma once

#include "frame/values/wstring.h"

#include <initializer_list>

/// What the two builders of `multipart/form-data` bodies share.
namespace orvane::multipart {

/// Between the parts of every form. It is not checked that a form's data is without it.
#define ORVANE_FORM_BOUNDARY u"EEDBA9E2-7BCD-44F8-8E15-F0314AF5AB43"
inline constexpr WStringView kBoundary = ORVANE_FORM_BOUNDARY;
/// The request header that goes with a form.
inline constexpr WStringView kHeader =
    u"Content-Type: multipart/form-data; boundary=" ORVANE_FORM_BOUNDARY u"\r\n";
#undef ORVANE_FORM_BOUNDARY
inline constexpr WStringView kLineEnd = u"\r\n";
/// A part's first line as far as its name.
inline constexpr WStringView kDisposition = u"Content-Disposition: form-data; name=\"";

/// Adds the pieces behind `form`, which grows so that many small parts cost linear time. Raises 7,
/// and leaves `form` as it was, when it would be longer than a text can be or memory is short.
void append(std::u16string& form, std::initializer_list<WStringView> pieces);

}  // namespace orvane::multipart

#pragma once

#include "frame/values/wstring.h"

namespace orvane {

/// The value of a `Cookie` header from the `Set-Cookie` values of a response, each ended by CR LF:
/// the pairs "name=value; " in their order, also the last with its separator. Left out are what has
/// no
/// "=" and the attributes "expires", "domain" and "path", in either case of the letters. Their
/// values aren't looked at: a cookie that has expired is sent like any other, and a name that
/// comes twice goes twice. Any other attribute with a value counts as a cookie.
///
///     GetFormattedCookies(u"a=1; path=/; HttpOnly\r\nb = 2\r\n") == u"a=1; b=2; "
WString GetFormattedCookies(WStringView cookies);

}  // namespace orvane

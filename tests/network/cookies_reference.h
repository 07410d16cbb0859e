#pragma once

#include "frame/values/text.h"
#include "support/text.h"

namespace orvane::test {

/// What `GetFormattedCookies` stands for: replace, split, and piece by piece.
inline WString referenceCookies(WStringView cookies) {
    if (cookies.empty()) return u"";
    WString result = u"";
    const Array<WString> pieces = split(replace(cookies, u"\r\n", u";"), u";");
    for (const WString& piece : pieces.elements()) {
        const std::int32_t equals = inStr(1, piece, u"=");
        if (equals == 0) continue;
        const WString name = nqTrimEx(left(piece, equals - 1));
        const WString value = nqTrimEx(mid(piece, equals + 1));
        const WString lowered = lCase(name);
        if (lowered == u"expires" || lowered == u"domain" || lowered == u"path") continue;
        result += name;
        result += u"=";
        result += value;
        result += u"; ";
    }
    return result;
}

}  // namespace orvane::test

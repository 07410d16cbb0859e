#include "network/Cookies.h"

#include "frame/values/text.h"
#include "support/text.h"

#include <algorithm>

namespace orvane {
namespace {

bool isAttribute(WStringView name) {
    constexpr std::size_t kLongest = 7;
    if (name.size() > kLongest) return false;
    const WString lowered = lCase(name);
    return lowered == u"expires" || lowered == u"domain" || lowered == u"path";
}

void addCookie(std::u16string& result, WStringView piece) {
    const std::size_t equals = piece.find(u'=');
    if (equals == WStringView::npos) return;
    const WString name = nqTrimEx(piece.substr(0, equals));
    if (isAttribute(name)) return;
    result.append(name.units()).append(u"=");
    result.append(nqTrimEx(piece.substr(equals + 1)).units()).append(u"; ");
}

/// The length of the first piece of `text`: up to a semicolon or a CR LF, which separates like one.
std::size_t pieceLength(WStringView text) {
    std::size_t at = 0;
    for (; at < text.size() && text[at] != u';'; ++at) {
        if (text[at] == u'\r' && at + 1 < text.size() && text[at + 1] == u'\n') break;
    }
    return at;
}

}  // namespace

WString GetFormattedCookies(WStringView cookies) {
    std::u16string result;
    while (!cookies.empty()) {
        const std::size_t length = pieceLength(cookies);
        addCookie(result, cookies.substr(0, length));
        const std::size_t separator = cookies.substr(length).starts_with(u"\r\n") ? 2 : 1;
        cookies.remove_prefix(std::min(cookies.size(), length + separator));
    }
    return result;
}

}  // namespace orvane

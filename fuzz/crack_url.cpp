#include "network/CrackURL.h"
#include "target.h"

#include <cstddef>
#include <cstdint>
#include <string>

namespace {

using namespace orvane;

struct Parts {
    WString protocol;
    WString address;
    std::int32_t port = -7;
    WString objectName;
};

/// What a URL's parts are whatever it holds: pieces of it, in its order.
void requirePieces(WStringView url, const Parts& parts) {
    const std::u16string front = parts.protocol.units() + parts.address.units();
    require(url.starts_with(front));
    require(parts.objectName == u"/" || url.ends_with(parts.objectName));
    require(parts.objectName.view().starts_with(u'/'));
    require(parts.address.view().find(u'/') == WStringView::npos);
    const std::size_t colon = url.find(u':');
    require(parts.protocol.view().find_first_not_of(u'/', colon + 1) == WStringView::npos);
}

}  // namespace

/// A URL in both forms. Each byte is a unit.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::u16string url(data, data + size);
    const std::size_t colon = url.find(u':');
    const bool hasProtocol = colon != std::u16string::npos && colon != 0;
    Parts http;
    Parts ftp;
    const bool httpResult = CrackURL(url, http.protocol, http.address, http.port, http.objectName);
    const bool ftpResult = CrackFTPURL(url, ftp.protocol, ftp.address, ftp.port, ftp.objectName);
    if (!hasProtocol) {
        require(!httpResult && !ftpResult && http.protocol.isNull() && ftp.protocol.isNull());
        return 0;
    }
    requirePieces(url, http);
    requirePieces(url, ftp);
    require(http.protocol == ftp.protocol && http.objectName == ftp.objectName);
    const bool goesOn = url.find(u'/', http.protocol.size()) != std::u16string::npos;
    if (goesOn) require(httpResult == ftpResult && http.port == ftp.port);
    if (goesOn) require(http.address == ftp.address);
    if (httpResult) require(http.address.view().find(u':') == WStringView::npos);
    return 0;
}

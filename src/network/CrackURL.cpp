#include "network/CrackURL.h"

#include "frame/errors.h"
#include "frame/values/conversions.h"

#include <algorithm>

namespace orvane {
namespace {

constexpr std::int32_t kDefaultPort = 80;
constexpr WStringView kRoot = u"/";

/// Takes the protocol and its slashes off `url`; false when there is none.
bool takeProtocol(WStringView& url, WString& protocol) {
    const std::size_t colon = url.find(u':');
    if (colon == WStringView::npos || colon == 0) return false;
    const std::size_t end = std::min(url.size(), url.find_first_not_of(u'/', colon + 1));
    protocol = WString(url.substr(0, end));
    url.remove_prefix(end);
    return true;
}

/// The port in a text; false, and `port` as it was, when the text is no Long.
bool takePort(WStringView text, std::int32_t& port) {
    ErrorTrap trap;
    return trap([&] { port = textToLong(text); });
}

/// Address and port of a URL that goes on behind them.
bool crackHost(WStringView host, WString& address, std::int32_t& port) {
    const std::size_t colon = host.find(u':');
    address = WString(host.substr(0, colon));
    if (colon != WStringView::npos) return takePort(host.substr(colon + 1), port);
    port = kDefaultPort;
    return true;
}

/// Address and port of a URL that ends with them: here a port that is none stays in the address.
bool crackLastHost(WStringView host, WString& address, std::int32_t& port) {
    const std::size_t colon = host.find(u':');
    address = WString(host);
    if (colon == WStringView::npos) {
        port = kDefaultPort;
    } else {
        if (!takePort(host.substr(colon + 1), port)) return false;
        address = WString(host.substr(0, colon));
    }
    return !address.empty();
}

bool crackLastFTPHost(WStringView host, WString& address, std::int32_t& port) {
    address = WString(host);
    port = kDefaultPort;
    return !address.empty();
}

template <class LastHost>
bool crack(WStringView url, WString& protocol, WString& address, std::int32_t& port,
           WString& objectName, LastHost&& lastHost) {
    if (!takeProtocol(url, protocol)) return false;
    const std::size_t slash = url.find(u'/');
    objectName = WString(slash == WStringView::npos ? kRoot : url.substr(slash));
    if (slash == WStringView::npos) return lastHost(url, address, port);
    return crackHost(url.substr(0, slash), address, port);
}

}  // namespace

bool CrackURL(WStringView url, WString& protocol, WString& address, std::int32_t& port,
              WString& objectName) {
    return crack(url, protocol, address, port, objectName, crackLastHost);
}

bool CrackFTPURL(WStringView url, WString& protocol, WString& address, std::int32_t& port,
                 WString& objectName) {
    return crack(url, protocol, address, port, objectName, crackLastFTPHost);
}

}  // namespace orvane

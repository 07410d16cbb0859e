#pragma once

#include "frame/values/wstring.h"

#include <cstdint>

namespace orvane {

/// Take a URL apart by hand, without the system's parser: scheme, host, port and the rest. An
/// output is written as soon as its part is known, so that a URL which is refused leaves the first
/// of them filled; what isn't known keeps what it held. User names are not understood.
///
///     CrackURL(u"http://host:8080/a?b", protocol, address, port, objectName)
///         -> true; "http://", "host", 8080, "/a?b"
///
/// `protocol` gets the text up to the first colon with that colon, and all slashes behind it,
/// however many. `port` is 80 where the URL names none, whatever the protocol; a named one is any
/// text that converts to a Long, so " 8080", "8e3" and "&H50" are ports and "-1" is one, too.
/// `objectName` is everything from the first slash behind the protocol on, or "/".
///
/// False for a URL without a colon or with one in front, for a port that is no Long, and for a URL
/// that names neither an address nor an object: "http://". With an object the address may be empty.
bool CrackURL(WStringView url, WString& protocol, WString& address, std::int32_t& port,
              WString& objectName);

/// The form of the FTP client. It differs where nothing follows the address: the port is not taken
/// off then but stays in `address`, and `port` is 80. "ftp://host:2121" has the address
/// "host:2121".
bool CrackFTPURL(WStringView url, WString& protocol, WString& address, std::int32_t& port,
                 WString& objectName);

}  // namespace orvane

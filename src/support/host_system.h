#pragma once

#include "frame/values/wstring.h"

/// The host's system: its name and its place among the Windows lines. A platform that refuses to
/// tell its version raises the run-time error of that failure.
namespace orvane {

/// The system's name, its service pack if `withServicePack`, and its version in brackets if
/// `withVersion`: "Microsoft Windows XP Service Pack 3 [5.1.2600]".
WString nqGetHostOSFullName(bool withServicePack, bool withVersion);

/// The system's name alone, without round brackets, so that it can stand between some:
/// "Windows XP".
WString nqGetHostOSShortName();

/// The line of systems, as the platform counts itself.
bool nqIsHostWin9x();
bool nqIsHostWinNT();

/// Windows 98 or later of its line, or Windows 2000 or later.
bool nqIsHostWin98_OrHigher();

/// Windows 2000 or later of the NT line. A system outside the Windows lines, which tells a name of
/// its own, counts as newer than all of them.
bool nqIsHostWin2000_OrHigher();

}  // namespace orvane

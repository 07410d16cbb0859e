#pragma once

#include "frame/values/wstring.h"

#include <cstdint>

/// Facts of the host: who runs it, where, on which system, with how much memory. A fact that the
/// platform refuses raises the run-time error of that failure.
namespace orvane {

/// The logon name of the process's user.
WString nqGetUserName();

/// The user's name; with `qualified` behind the name of its domain or computer and a backslash, as
/// "HOST\user". A platform that knows no qualified names gets it from the computer's name.
WString nqGetFullUserName(bool qualified);

WString nqGetComputerName();

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

/// Memory figures; quantities in bytes, whole numbers in Doubles.
struct MemoryFigures {
    std::int32_t memoryLoad = 0;  ///< percentage of the physical memory in use
    double totalPhysical = 0;
    double availablePhysical = 0;
    double totalPageFile = 0;
    double availablePageFile = 0;
    double totalVirtual = 0;
    double availableVirtual = 0;
};

MemoryFigures nqGlobalMemoryStatus();

}  // namespace orvane

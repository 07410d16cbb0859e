#pragma once

#include "frame/values/wstring.h"

#include <cstdint>

/// Facts of the host: who runs it, where, with how much memory. A fact that the platform refuses
/// raises the run-time error of that failure.
namespace orvane {

/// The logon name of the process's user.
WString nqGetUserName();

/// The user's name; with `qualified` behind the name of its domain or computer and a backslash, as
/// "HOST\user". A platform that knows no qualified names gets it from the computer's name.
WString nqGetFullUserName(bool qualified);

WString nqGetComputerName();

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

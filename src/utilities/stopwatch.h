#pragma once

#include "platform/user32.h"
#include "support/numbers.h"

namespace orvane {

/// The audible mark of a stopwatch's start; a system that can't make the sound goes without.
inline void beep() {
    constexpr std::uint32_t kSimpleBeep = 0xFFFFFFFF;
    platform::user32.MessageBeep(kSimpleBeep);
}

/// A stopwatch's time as text: `total` is the text of `milliseconds`; with `iterations` above 0
/// the time of one pass and their number stand in front of it.
inline WString stopwatchText(double milliseconds, const WString& total, std::int32_t iterations) {
    if (iterations <= 0) return total + u" ms.";
    return nqFormatDouble(milliseconds / iterations) + u" ms. / " + nqFormatLong(iterations) +
           u" (" + total + u" ms.)";
}

}  // namespace orvane

#pragma once

#include "frame/automation/automation_object.h"

namespace orvane {

/// A stopwatch on the system's high-resolution counter. Where there is none its frequency is 0, and
/// every time raises the error of the division: 11, or 6 while both marks are the same.
class orvBenchMarkHP final : public automation::AutomationObject {
public:
    static const automation::ClassTable& table();

    orvBenchMarkHP();

    /// Beeps, then notes the start: the sound is no part of the time.
    void FirstMark();
    /// Notes the end; makes no sound.
    void LaskMark();

    /// Counter ticks from the first mark to the last.
    double GetTickDifference();
    double GetTickDifferenceMS();
    double GetTickDifferenceSec();

    /// The counter's ticks in a second, asked of the system on every call.
    double GetTickFrequencyPerSec();
    double GetTickFrequencyPerMS();

    /// The text of `orvBenchMark.toString`, with the whole time rounded to milliseconds. Raises 6
    /// for a time outside the signed 64-bit range.
    WString toString(std::int32_t iterations);

private:
    std::int64_t firstCounter_ = 0;
    std::int64_t lastCounter_ = 0;
};

}  // namespace orvane

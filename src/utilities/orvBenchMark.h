#pragma once

#include "frame/automation/automation_object.h"

namespace orvane {

/// A stopwatch on the system's millisecond tick.
class orvBenchMark final : public automation::AutomationObject {
public:
    static const automation::ClassTable& table();

    orvBenchMark();

    /// Beeps, then notes the start: the sound is no part of the time.
    void FirstMark();
    /// Notes the end; makes no sound.
    void LaskMark();

    /// Milliseconds from the first mark to the last. Raises 6 when the difference of the ticks, as
    /// Longs, is none: the tick wraps after 49.7 days and changes its sign half way.
    std::int32_t GetTickDifferenceMS();

    /// "1000 ms.", or for a number of passes above 0 "250 ms. / 4 (1000 ms.)": the time of a pass,
    /// the passes, the whole time. Raises what `GetTickDifferenceMS` raises.
    WString toString(std::int32_t iterations);

private:
    std::int32_t firstTick_ = 0;
    std::int32_t lastTick_ = 0;
};

}  // namespace orvane

#include "utilities/orvBenchMarkHP.h"

#include "frame/arithmetic.h"
#include "frame/automation/describe.h"
#include "platform/kernel32.h"
#include "utilities/stopwatch.h"

namespace orvane {

const automation::ClassTable& orvBenchMarkHP::table() {
    static const automation::ClassTable& table = automation::classTable([] {
        return automation::ClassBuilder<orvBenchMarkHP>(
                   "orvBenchMarkHP", automation::Instancing::creatable,
                   {0xC3331EE2, 0x1C83, 0x4CB0, {0xA6, 0x56, 0xF3, 0x7D, 0x67, 0x87, 0x49, 0x0C}},
                   {0xA47A014E, 0xEBFE, 0x4A20, {0x8B, 0x52, 0x91, 0x96, 0x53, 0xEC, 0x6D, 0x03}})
            .method<&orvBenchMarkHP::FirstMark>("FirstMark")
            .method<&orvBenchMarkHP::LaskMark>("LaskMark")
            .method<&orvBenchMarkHP::GetTickDifference>("GetTickDifference")
            .method<&orvBenchMarkHP::GetTickDifferenceMS>("GetTickDifferenceMS")
            .method<&orvBenchMarkHP::GetTickDifferenceSec>("GetTickDifferenceSec")
            .method<&orvBenchMarkHP::GetTickFrequencyPerSec>("GetTickFrequencyPerSec")
            .method<&orvBenchMarkHP::GetTickFrequencyPerMS>("GetTickFrequencyPerMS")
            .method<&orvBenchMarkHP::toString>("toString", {automation::optional("Iterations")})
            .build();
    });
    return table;
}

orvBenchMarkHP::orvBenchMarkHP() : AutomationObject(table()) {}

void orvBenchMarkHP::FirstMark() {
    beep();
    platform::kernel32.QueryPerformanceCounter(firstCounter_);
}

void orvBenchMarkHP::LaskMark() {
    platform::kernel32.QueryPerformanceCounter(lastCounter_);
}

double orvBenchMarkHP::GetTickDifference() {
    return nqLargeIntegerToDouble(lastCounter_) - nqLargeIntegerToDouble(firstCounter_);
}

double orvBenchMarkHP::GetTickDifferenceMS() {
    return checkedDivide(GetTickDifference(), GetTickFrequencyPerMS());
}

double orvBenchMarkHP::GetTickDifferenceSec() {
    return checkedDivide(GetTickDifference(), GetTickFrequencyPerSec());
}

double orvBenchMarkHP::GetTickFrequencyPerSec() {
    std::int64_t frequency = 0;
    platform::kernel32.QueryPerformanceFrequency(frequency);
    return nqLargeIntegerToDouble(frequency);
}

double orvBenchMarkHP::GetTickFrequencyPerMS() {
    return GetTickFrequencyPerSec() / 1000;
}

WString orvBenchMarkHP::toString(std::int32_t iterations) {
    const double difference = GetTickDifferenceMS();
    return stopwatchText(difference, nqFormatInt64(difference), iterations);
}

}  // namespace orvane

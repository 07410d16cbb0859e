#include "utilities/orvBenchMark.h"

#include "frame/arithmetic.h"
#include "frame/automation/describe.h"
#include "platform/kernel32.h"
#include "utilities/stopwatch.h"

namespace orvane {
namespace {

/// The tick as a Long: its 32 bits, whatever the sign.
std::int32_t tick() {
    return static_cast<std::int32_t>(platform::kernel32.GetTickCount());
}

}  // namespace

const automation::ClassTable& orvBenchMark::table() {
    static const automation::ClassTable& table = automation::classTable([] {
        return automation::ClassBuilder<orvBenchMark>(
                   "orvBenchMark", automation::Instancing::creatable,
                   {0x77C3AFD9, 0x834B, 0x4E2B, {0xA0, 0x43, 0x96, 0x6F, 0xFB, 0x4E, 0xAC, 0xCB}},
                   {0xD58F5763, 0xD54F, 0x41F9, {0x9B, 0x1C, 0xCB, 0x59, 0x54, 0x10, 0x84, 0x5A}})
            .method<&orvBenchMark::FirstMark>("FirstMark")
            .method<&orvBenchMark::LaskMark>("LaskMark")
            .method<&orvBenchMark::GetTickDifferenceMS>("GetTickDifferenceMS")
            .method<&orvBenchMark::toString>("toString", {automation::optional("Iterations")})
            .build();
    });
    return table;
}

orvBenchMark::orvBenchMark() : AutomationObject(table()) {}

void orvBenchMark::FirstMark() {
    beep();
    firstTick_ = tick();
}

void orvBenchMark::LaskMark() {
    lastTick_ = tick();
}

std::int32_t orvBenchMark::GetTickDifferenceMS() {
    return checkedSubtract(lastTick_, firstTick_);
}

WString orvBenchMark::toString(std::int32_t iterations) {
    const std::int32_t difference = GetTickDifferenceMS();
    return stopwatchText(difference, nqFormatLong(difference), iterations);
}

}  // namespace orvane

#include "platform/ole32.h"

namespace orvane::platform {

namespace {

// Classes are not registered here: a component's own are found by the component itself.
std::int32_t classIdFromProgId(const std::u16string&, ClassIdBytes&) {
    return kNoRegistration;
}

std::int32_t createInstance(const ClassIdBytes&, IUnknown*& object) {
    object = nullptr;
    return kNoRegistration;
}

constexpr Ole32 boundTable() {
    Ole32 table;
    table.CLSIDFromProgID.bind<&classIdFromProgId>();
    table.CoCreateInstance.bind<&createInstance>();
    return table;
}
static_assert(allBound(boundTable()));

}  // namespace

constinit Ole32 ole32 = boundTable();

}  // namespace orvane::platform

#include "platform/letter_case.h"

#include "frame/values/text.h"

namespace orvane {
namespace {

template <char16_t (*mapping)(char16_t)>
WString mapped(WStringView text) {
    if (text.data() == nullptr) return {};
    std::u16string units(text);
    for (char16_t& unit : units)
        unit = mapping(unit);
    return WString(std::move(units));
}

}  // namespace

char16_t upperUnit(char16_t unit) {
    return platform::upperUnit(unit);
}

char16_t lowerUnit(char16_t unit) {
    return platform::lowerUnit(unit);
}

WString uCase(WStringView text) {
    return mapped<platform::upperUnit>(text);
}

WString lCase(WStringView text) {
    return mapped<platform::lowerUnit>(text);
}

}  // namespace orvane

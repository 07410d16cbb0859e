#include "platform/ole32.h"

#include <algorithm>
#include <string_view>

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

// The first three parts are numbers in the machine's order, the rest single bytes.
constexpr std::array<std::uint8_t, 16> kOrder = {3, 2, 1,  0,  5,  4,  7,  6,
                                                 8, 9, 10, 11, 12, 13, 14, 15};

std::int32_t stringFromGuid(const ClassIdBytes& classId, std::span<char16_t> text) {
    constexpr std::u16string_view kDigits = u"0123456789ABCDEF";
    std::u16string form = u"{";
    for (std::size_t i = 0; i < kOrder.size(); ++i) {
        if (i == 4 || i == 6 || i == 8 || i == 10) form += u'-';
        const std::uint8_t byte = classId.bytes[kOrder[i]];
        form += kDigits[byte >> 4];
        form += kDigits[byte & 15];
    }
    form += u'}';
    form += u'\0';
    if (text.size() < form.size()) return 0;
    std::ranges::copy(form, text.begin());
    return static_cast<std::int32_t>(form.size());
}

constexpr Ole32 boundTable() {
    Ole32 table;
    table.CLSIDFromProgID.bind<&classIdFromProgId>();
    table.CoCreateInstance.bind<&createInstance>();
    table.StringFromGUID2.bind<&stringFromGuid>();
    return table;
}
static_assert(allBound(boundTable()));

}  // namespace

constinit Ole32 ole32 = boundTable();

}  // namespace orvane::platform

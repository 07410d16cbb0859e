// Texts from outside as numbers, dates and Booleans, and numbers of any bits as texts and back.

#include "frame/values/conversions.h"
#include "frame/errors.h"
#include "frame/values/compare.h"
#include "target.h"

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <limits>
#include <optional>
#include <string>

namespace {

using namespace orvane;

/// The result of a conversion, or nothing when it raises one of its two errors.
template <class Conversion>
auto attempt(Conversion conversion) -> std::optional<decltype(conversion())> {
    try {
        return conversion();
    } catch (const RuntimeError& failure) {
        require(failure.number == error::kTypeMismatch || failure.number == error::kOverflow);
        return std::nullopt;
    }
}

void readText(WStringView text) {
    const auto number = attempt([&] { return textToDouble(text); });
    require(number == numberIn(text));
    const auto whole = attempt([&] { return textToLong(text); });
    // A narrower target takes nothing that a wider one refuses.
    if (attempt([&] { return textToInteger(text); })) require(whole.has_value());
    if (attempt([&] { return textToByte(text); })) require(whole.has_value());
    if (whole) require(number.has_value());
    if (whole && std::fabs(*number) < 1e15) require(std::fabs(*number - *whole) <= 0.5);
    if (const auto money = attempt([&] { return textToCurrency(text); })) {
        require(number.has_value());
        require(textToCurrency(currencyToText(*money)) == *money);
    }
    if (const auto date = attempt([&] { return textToDate(text); })) {
        const WString written = dateToText(*date);
        require(dateToText(textToDate(written)) == written);
    }
    attempt([&] { return textToBoolean(text); });
    require(isEqual(Variant(WString(text)), Variant(WString(text))));
}

void readBits(const std::uint8_t* data) {
    std::int64_t bits = 0;
    std::memcpy(&bits, data, sizeof bits);
    double number = 0;
    std::memcpy(&number, data, sizeof number);
    require(textToCurrency(currencyToText({bits})).scaled == bits);
    const auto whole = static_cast<std::int32_t>(bits & 0xFFFFFFFF);
    require(textToLong(longToText(whole)) == whole);
    require(textToDouble(longToText(whole)) == whole);

    const auto text = attempt([&] { return doubleToText(number); });
    require(text.has_value() == std::isfinite(number));
    if (!text) return;
    // 15 digits come back as they were, but for subnormal numbers, which have fewer, and for the
    // greatest ones, which may be rounded up out of range.
    const auto again = attempt([&] { return textToDouble(*text); });
    if (std::fabs(number) < 1.7e308) require(again.has_value());
    if (again && std::isnormal(number)) require(doubleToText(*again) == *text);
    if (const auto long32 = attempt([&] { return doubleToLong(number); })) {
        require(std::fabs(number - *long32) <= 0.5);
    }
    attempt([&] { return doubleToCurrency(number).scaled; });
    if (const auto date = attempt([&] { return dateToText({number}); })) {
        require(dateToText(textToDate(*date)) == *date);
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    // Bytes as units reach the grammar fastest; what is outside Latin-1 is no number anyway.
    readText(std::u16string(data, data + size));
    if (size >= sizeof(std::int64_t)) readBits(data);
    return 0;
}

#pragma once

#include <compare>
#include <cstdint>

namespace orvane {

/// A fixed-point number of 64 bits, scaled by 10000.
struct Currency {
    std::int64_t scaled = 0;
    friend auto operator<=>(const Currency&, const Currency&) = default;
};

/// A moment: days since 1899-12-30, the time of day as the fraction.
struct Date {
    double days = 0;
    friend auto operator<=>(const Date&, const Date&) = default;
};

/// The content of an Error value: a status code.
struct ErrorValue {
    std::int32_t code = 0;
    friend bool operator==(const ErrorValue&, const ErrorValue&) = default;
};

/// The status code that stands for an optional argument that was left out.
inline constexpr ErrorValue kMissing{static_cast<std::int32_t>(0x80020004)};

/// Tags of a `Variant`, with the numbers that `VarType` gives and the binary interface uses.
enum class VarType : std::uint16_t {
    Empty = 0,
    Null = 1,
    Integer = 2,
    Long = 3,
    Single = 4,
    Double = 5,
    Currency = 6,
    Date = 7,
    String = 8,
    Object = 9,
    Error = 10,
    Boolean = 11,
    Variant = 12,
    Byte = 17,
    Array = 0x2000,
};

}  // namespace orvane

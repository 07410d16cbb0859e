#pragma once

#include "platform/handles.h"
#include "platform/operation.h"

#include <array>

struct IUnknown;

namespace orvane::platform {

/// A class identifier as its 16 bytes lie in memory.
struct ClassIdBytes {
    std::array<std::uint8_t, 16> bytes{};
};
void describe(std::string& out, const ClassIdBytes& classId);

/// No class is registered under this name (CO_E_CLASSSTRING).
inline constexpr auto kClassStringUnknown = static_cast<std::int32_t>(0x800401F3);
/// The same where a component finds its own classes without being registered.
inline constexpr auto kNoRegistration = static_cast<std::int32_t>(0x80004001);
/// The identifier is not registered (REGDB_E_CLASSNOTREG).
inline constexpr auto kClassNotRegistered = static_cast<std::int32_t>(0x80040154);

/// Results are status codes of the binary interface: negative means failed.
struct Ole32 {
    /// The identifier of the class that is registered under a name.
    Operation<std::int32_t(const std::u16string& progId, ClassIdBytes& classId)> CLSIDFromProgID{
        "ole32", "CLSIDFromProgID", kClassStringUnknown};
    /// A new object of a registered class; the caller gets one reference in `object`. On Linux the
    /// module that the class is registered with is loaded for it, and stays: 0x8007007E when it
    /// can't be, 0x800401F9 when it is none of the kind; then what its class factory answers.
    Operation<std::int32_t(const ClassIdBytes& classId, IUnknown*& object)> CoCreateInstance{
        "ole32", "CoCreateInstance", kClassNotRegistered};
    /// Writes an identifier in braces, upper case, with a NUL at its end. The units that it takes,
    /// 39, or 0 when `text` has no room for them.
    Operation<std::int32_t(const ClassIdBytes& classId, std::span<char16_t> text)> StringFromGUID2{
        "ole32", "StringFromGUID2", 0};

    template <class Visitor>
    constexpr void visit(Visitor&& visitor) {
        visitor(CLSIDFromProgID, CoCreateInstance, StringFromGUID2);
    }
};
extern Ole32 ole32;

}  // namespace orvane::platform

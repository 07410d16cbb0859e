#pragma once

#include "platform/handles.h"
#include "platform/operation.h"

#include <limits>

namespace orvane::platform {

/// What `uncompress` gives when it can't be called at all; no code of zlib's own.
inline constexpr std::int32_t kZlibNotBound = std::numeric_limits<std::int32_t>::min();

/// The functions of zlib that the library uses, bound by the bare name "ZLibStdCall.DLL" on first
/// use. A library that isn't there leaves `kErrorModuleNotFound`, one that lacks the function
/// `kErrorProcedureNotFound`; the next call looks again.
struct Zlib {
    /// Inflates a zlib stream in one go. `length` goes in as the room in `destination` and comes
    /// back as the bytes written there. The result is zlib's code: 0 for a complete stream,
    /// negative for a bad or incomplete one, of which `destination` holds what could be inflated.
    Operation<std::int32_t(std::span<std::uint8_t> destination, std::uint32_t& length,
                           std::span<const std::uint8_t> source)>
        uncompress{"zlib", "uncompress", kZlibNotBound, kErrorModuleNotFound};
    /// zlib's version text ("1.2.13"); false when it can't be asked.
    Operation<bool(std::string& version)> zlibVersion{"zlib", "zlibVersion", false,
                                                      kErrorModuleNotFound};

    template <class Visitor>
    constexpr void visit(Visitor&& visitor) {
        visitor(uncompress, zlibVersion);
    }
};
extern Zlib zlib;

}  // namespace orvane::platform

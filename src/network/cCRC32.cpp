#include "network/cCRC32.h"

#include "network/crc32_steps.h"

namespace orvane {

std::int32_t cCRC32::GetByteArrayCrc32(const Array<std::uint8_t>& bytes) const {
    if (bytes.dimensions() != 1) raise(error::kSubscriptOutOfRange);
    return static_cast<std::int32_t>(crc32(0, bytes.elements()));
}

std::uint32_t crc32(std::uint32_t crc, std::span<const std::uint8_t> bytes) {
    static const bool folds = crc::canFold();
    return ~(folds ? crc::byFolding(~crc, bytes) : crc::bySlices(~crc, bytes));
}

// A zero byte moves the register on by x^8, whatever is in it.
std::uint32_t crc32OfZeros(std::uint32_t crc, std::uint64_t count) {
    return ~crc::multiply(~crc, crc::powerOfX(8 * count));
}

}  // namespace orvane

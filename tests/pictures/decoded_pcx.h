#pragma once

#include "pictures/CFilePCX.h"
#include "pictures/decoded_file.h"
#include "pictures/pcx_file.h"
#include "pictures/pcx_reference.h"

namespace orvane::test {

/// What the reader makes of a PCX file.
struct DecodedPcx : DecodedFile {
    explicit DecodedPcx(std::span<const std::uint8_t> bytes)
        : DecodedFile(&CFilePCX::ReadPCX, bytes) {}
    explicit DecodedPcx(const PcxFile& file) : DecodedPcx(file.bytes()) {}
};

/// Whether the reader and the reference agree on a file.
inline testing::AssertionResult agrees(const PcxFile& file) {
    const Bytes bytes = file.bytes();
    return DecodedPcx(bytes).isLike(referencePcx(bytes));
}

}  // namespace orvane::test

#pragma once

#include "pictures/CFilePSD.h"
#include "pictures/decoded_file.h"
#include "pictures/psd_file.h"
#include "pictures/psd_reference.h"

namespace orvane::test {

/// What the reader makes of a Photoshop document.
struct DecodedPsd : DecodedFile {
    explicit DecodedPsd(std::span<const std::uint8_t> bytes)
        : DecodedFile(&CFilePSD::ReadPSD, bytes) {}
    explicit DecodedPsd(const PsdFile& file) : DecodedPsd(file.bytes()) {}
};

/// Whether the reader and the reference agree on a file.
inline testing::AssertionResult agrees(const PsdFile& file) {
    const Bytes bytes = file.bytes();
    return DecodedPsd(bytes).isLike(referencePsd(bytes));
}

}  // namespace orvane::test

#pragma once

#include "pictures/CFileTGA.h"
#include "pictures/decoded_file.h"
#include "pictures/targa_file.h"
#include "pictures/targa_reference.h"

namespace orvane::test {

/// What the reader makes of a Targa file.
struct DecodedTarga : DecodedFile {
    explicit DecodedTarga(std::span<const std::uint8_t> bytes)
        : DecodedFile(&CFileTGA::ReadTGA, bytes) {}
    explicit DecodedTarga(const TargaFile& file) : DecodedTarga(file.bytes()) {}
};

/// Whether the reader and the reference agree on a file.
inline testing::AssertionResult agrees(std::span<const std::uint8_t> bytes) {
    return DecodedTarga(bytes).isLike(referenceTarga(bytes));
}
inline testing::AssertionResult agrees(const TargaFile& file) {
    return agrees(file.bytes());
}

}  // namespace orvane::test

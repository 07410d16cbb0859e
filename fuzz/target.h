#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdlib>

/// What every fuzz target defines: one run over one input, which gives 0.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

/// Ends the process unless that holds: the fuzzer keeps the input and tells of it.
inline void require(bool holds) {
    if (!holds) std::abort();
}

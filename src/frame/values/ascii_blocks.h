#pragma once

#include <cstddef>
#include <cstdint>

#ifdef __SSE2__
#include <emmintrin.h>
#endif

/// The quick way of byte strings that are mostly ASCII text: sixteen of its characters at a time,
/// where the processor has the instructions for it. Elsewhere there is no quick way.
namespace orvane {

inline constexpr std::size_t kAsciiBlock = 16;

#ifdef __SSE2__
inline __m128i loadBlock(const void* from) {
    return _mm_loadu_si128(static_cast<const __m128i*>(from));
}
inline void storeBlock(void* to, __m128i block) {
    _mm_storeu_si128(static_cast<__m128i*>(to), block);
}
#endif

/// Widens blocks of ASCII from the start of `bytes` on; stops before the first block that holds
/// anything else. Returns how many bytes that were.
inline std::size_t widenAscii([[maybe_unused]] const std::uint8_t* bytes,
                              [[maybe_unused]] std::size_t count,
                              [[maybe_unused]] char16_t* units) {
    std::size_t done = 0;
#ifdef __SSE2__
    const __m128i zero = _mm_setzero_si128();
    for (; count - done >= kAsciiBlock; done += kAsciiBlock) {
        const __m128i block = loadBlock(bytes + done);
        if (_mm_movemask_epi8(block) != 0) break;
        storeBlock(units + done, _mm_unpacklo_epi8(block, zero));
        storeBlock(units + done + kAsciiBlock / 2, _mm_unpackhi_epi8(block, zero));
    }
#endif
    return done;
}

/// The way back: narrows blocks of ASCII from the start of `units` on.
inline std::size_t narrowAscii([[maybe_unused]] const char16_t* units,
                               [[maybe_unused]] std::size_t count,
                               [[maybe_unused]] std::uint8_t* bytes) {
    std::size_t done = 0;
#ifdef __SSE2__
    const __m128i outside = _mm_set1_epi16(static_cast<short>(0xFF80));
    const __m128i zero = _mm_setzero_si128();
    for (; count - done >= kAsciiBlock; done += kAsciiBlock) {
        const __m128i low = loadBlock(units + done);
        const __m128i high = loadBlock(units + done + kAsciiBlock / 2);
        const __m128i others = _mm_and_si128(_mm_or_si128(low, high), outside);
        if (_mm_movemask_epi8(_mm_cmpeq_epi16(others, zero)) != 0xFFFF) break;
        storeBlock(bytes + done, _mm_packus_epi16(low, high));
    }
#endif
    return done;
}

}  // namespace orvane

#include "pictures/interleave.h"

#ifdef __SSE2__
#include <emmintrin.h>
#endif

namespace orvane {
namespace {

#ifdef __SSE2__
/// Two pixels of 32 bits in each half become pixels of 24 bits, which are stored with two bytes
/// too many behind each half.
void storePairs(__m128i pixels, std::uint8_t* target) {
    const __m128i first = _mm_set1_epi64x(0x0000000000FFFFFF);
    const __m128i second = _mm_set1_epi64x(0x0000FFFFFF000000);
    const __m128i packed = _mm_or_si128(_mm_and_si128(pixels, first),
                                        _mm_and_si128(_mm_srli_epi64(pixels, 8), second));
    _mm_storel_epi64(reinterpret_cast<__m128i*>(target), packed);
    _mm_storel_epi64(reinterpret_cast<__m128i*>(target + 6), _mm_unpackhi_epi64(packed, packed));
}

/// Sixteen pixels; two bytes behind them are written, too.
void interleave16(const std::uint8_t* blue, const std::uint8_t* green, const std::uint8_t* red,
                  std::uint8_t* target) {
    const auto load = [](const std::uint8_t* from) {
        return _mm_loadu_si128(reinterpret_cast<const __m128i*>(from));
    };
    const __m128i zero = _mm_setzero_si128();
    const __m128i b = load(blue);
    const __m128i g = load(green);
    const __m128i r = load(red);
    const __m128i lowPairs = _mm_unpacklo_epi8(b, g);
    const __m128i highPairs = _mm_unpackhi_epi8(b, g);
    const __m128i lowReds = _mm_unpacklo_epi8(r, zero);
    const __m128i highReds = _mm_unpackhi_epi8(r, zero);
    storePairs(_mm_unpacklo_epi16(lowPairs, lowReds), target);
    storePairs(_mm_unpackhi_epi16(lowPairs, lowReds), target + 12);
    storePairs(_mm_unpacklo_epi16(highPairs, highReds), target + 24);
    storePairs(_mm_unpackhi_epi16(highPairs, highReds), target + 36);
}
#endif

}  // namespace

void interleave(const std::uint8_t* blue, const std::uint8_t* green, const std::uint8_t* red,
                std::uint8_t* target, std::size_t count) {
    std::size_t i = 0;
#ifdef __SSE2__
    // The pixel behind each sixteen overwrites what is written too far: there must be one.
    for (; count - i > 16; i += 16)
        interleave16(blue + i, green + i, red + i, target + i * 3);
#endif
    for (; i < count; ++i) {
        target[i * 3] = blue[i];
        target[i * 3 + 1] = green[i];
        target[i * 3 + 2] = red[i];
    }
}

}  // namespace orvane

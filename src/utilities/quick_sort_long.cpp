#include "utilities/block_partition.h"
#include "utilities/quick_sort.h"
#include "utilities/quick_sort_range.h"

#ifdef __SSE2__
#include <emmintrin.h>
#endif

namespace orvane {
namespace {

/// Compares four elements at a time with the pivot, where the machine has the instructions.
class LongElements : public SortedElements<std::int32_t> {
public:
    using SortedElements::SortedElements;

    bool isAbove(std::size_t i, std::size_t j) const { return elements_[i] > elements_[j]; }

    std::size_t partition(std::size_t low, std::size_t high) {
        pivot_ = elements_[high];
        return blockPartition(*this, low, high);
    }

    bool isAllEqual(std::size_t low, std::size_t high) const { return !anyBelow(*this, low, high); }

    BlockMask above(std::size_t first, std::size_t count) const {
        return masks<true, false>(first, count).first;
    }
    BlockMask below(std::size_t first, std::size_t count) const {
        return masks<false, true>(first, count).second;
    }
    std::pair<BlockMask, BlockMask> sides(std::size_t first, std::size_t count) const {
        return masks<true, true>(first, count);
    }

private:
    template <bool wantAbove, bool wantBelow>
    std::pair<BlockMask, BlockMask> masks(std::size_t first, std::size_t count) const {
        const std::int32_t* const block = elements_ + first;
        BlockMask above = 0;
        BlockMask below = 0;
#ifdef __SSE2__
        const __m128i pivot = _mm_set1_epi32(pivot_);
        const auto four = [&](std::size_t i) {
            const void* const place = block + i;
            return _mm_loadu_si128(static_cast<const __m128i*>(place));
        };
        const auto readFour = [&](std::size_t i) {
            if constexpr (wantAbove) above |= bitsOf(_mm_cmpgt_epi32(four(i), pivot)) << i;
            if constexpr (wantBelow) below |= bitsOf(_mm_cmpgt_epi32(pivot, four(i))) << i;
        };
        const auto sixteen = [&](std::size_t i, auto compare) {
            const __m128i low = _mm_packs_epi32(compare(four(i)), compare(four(i + 4)));
            const __m128i high = _mm_packs_epi32(compare(four(i + 8)), compare(four(i + 12)));
            const int bits = _mm_movemask_epi8(_mm_packs_epi16(low, high));
            return static_cast<BlockMask>(static_cast<unsigned>(bits)) << i;
        };
        if (count == kBlock) {
            for (std::size_t i = 0; i < kBlock; i += 16) {
                if constexpr (wantAbove)
                    above |= sixteen(i, [&](__m128i v) { return _mm_cmpgt_epi32(v, pivot); });
                if constexpr (wantBelow)
                    below |= sixteen(i, [&](__m128i v) { return _mm_cmpgt_epi32(pivot, v); });
            }
            return {above, below};
        }
        if (count >= 4) {
            for (std::size_t i = 0; i + 4 <= count; i += 4)
                readFour(i);
            readFour(count - 4);  // what is left, and some of the last four again
            return {above, below};
        }
#endif
        for (std::size_t i = 0; i < count; ++i) {
            if constexpr (wantAbove) above |= BlockMask{block[i] > pivot_} << i;
            if constexpr (wantBelow) below |= BlockMask{block[i] < pivot_} << i;
        }
        return {above, below};
    }

#ifdef __SSE2__
    static BlockMask bitsOf(__m128i lanes) {
        return static_cast<BlockMask>(_mm_movemask_ps(_mm_castsi128_ps(lanes)));
    }
#endif

    std::int32_t pivot_ = 0;
};

}  // namespace

void quickSort(std::span<std::int32_t> elements, std::int32_t lower) {
    if (elements.size() < 2) return;
    LongElements range(elements.data(), lower);
    quickSortRange(range, 0, elements.size() - 1);
}

}  // namespace orvane

#include "utilities/block_partition.h"
#include "utilities/quick_sort.h"
#include "utilities/quick_sort_range.h"

#ifdef __SSE2__
#include <emmintrin.h>
#endif

namespace orvane {
namespace {

/// The order of two texts by their units: below 0, 0 or above 0.
int compareUnits(WStringView left, WStringView right) {
    const std::size_t common = std::min(left.size(), right.size());
    std::size_t i = 0;
#ifdef __SSE2__
    const auto eight = [](const char16_t* units) {
        const void* const place = units;
        return _mm_loadu_si128(static_cast<const __m128i*>(place));
    };
    for (; i + 8 <= common; i += 8) {
        const __m128i same = _mm_cmpeq_epi16(eight(left.data() + i), eight(right.data() + i));
        const unsigned bits = static_cast<unsigned>(_mm_movemask_epi8(same));
        if (bits == 0xFFFF) continue;
        i += static_cast<std::size_t>(std::countr_one(bits)) / 2;
        return int{left[i]} - int{right[i]};
    }
#endif
    for (; i < common; ++i) {
        if (left[i] != right[i]) return int{left[i]} - int{right[i]};
    }
    return int{left.size() > right.size()} - int{left.size() < right.size()};
}

class TextElements : public SortedElements<WString> {
public:
    using SortedElements::SortedElements;

    bool isAbove(std::size_t i, std::size_t j) const {
        return compareUnits(elements_[i].units(), elements_[j].units()) > 0;
    }

    std::size_t partition(std::size_t low, std::size_t high) {
        pivot_ = elements_[high].units();  // the pivot's own place is never exchanged
        return blockPartition(*this, low, high);
    }

    bool isAllEqual(std::size_t low, std::size_t high) const { return !anyBelow(*this, low, high); }

    BlockMask above(std::size_t first, std::size_t count) const {
        return sides(first, count).first;
    }
    BlockMask below(std::size_t first, std::size_t count) const {
        return sides(first, count).second;
    }
    std::pair<BlockMask, BlockMask> sides(std::size_t first, std::size_t count) const {
        BlockMask above = 0;
        BlockMask below = 0;
        for (std::size_t i = 0; i < count; ++i) {
            const int order = compareUnits(elements_[first + i].units(), pivot_);
            above |= BlockMask{order > 0} << i;
            below |= BlockMask{order < 0} << i;
        }
        return {above, below};
    }

private:
    WStringView pivot_;
};

}  // namespace

void quickSort(std::span<WString> elements, std::int32_t lower) {
    if (elements.size() < 2) return;
    TextElements range(elements.data(), lower);
    quickSortRange(range, 0, elements.size() - 1);
}

}  // namespace orvane

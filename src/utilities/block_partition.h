#pragma once

#include <algorithm>
#include <bit>
#include <cstddef>
#include <utility>

/// The partition of a quick sort whose two scans start again from the ends on every pass, carried
/// out a block of elements at a time.
///
/// The form to match: the left scan I stops at the first element above the pivot, the right scan J
/// at the last one below it; they are exchanged and both scans begin anew, until I and J meet. A
/// pass can't stop before the places of the last one: left of the former I everything is at most
/// the pivot, and what came to I by the exchange is below it; right of the former J everything is
/// at least the pivot, and what came to J is above it, which also stops I there at the latest. So
/// with elements that compare with the pivot without side effects and always one way or the other,
/// the k-th exchange is that of the k-th element above the pivot from the left with the k-th below
/// it from the right, as long as the first lies left of the second; and I ends at the first element
/// that is above the pivot then, or at the pivot's own place when none is.
///
/// That can be read from bit masks of blocks, without a branch for an element.
namespace orvane {

/// A bit for each element of a block, the lowest for the first.
using BlockMask = std::size_t;
inline constexpr std::size_t kBlock = sizeof(BlockMask) * 8;

inline std::size_t firstOf(BlockMask mask) {
    return static_cast<std::size_t>(std::countr_zero(mask));
}
inline std::size_t lastOf(BlockMask mask) {
    return kBlock - 1 - static_cast<std::size_t>(std::countl_zero(mask));
}
inline void dropFirst(BlockMask& mask) {
    mask &= mask - 1;
}
inline void dropLast(BlockMask& mask) {
    mask &= ~(BlockMask{1} << lastOf(mask));
}

/// A stretch of elements and those of them that have still to be exchanged.
struct Block {
    std::size_t first = 0;
    std::size_t count = 0;
    BlockMask open = 0;
};

/// The first place from `from` on whose element is above the pivot, `high` when there is none.
template <class Elements>
std::size_t firstAbove(const Elements& elements, std::size_t from, std::size_t high) {
    for (; from < high; from += std::min(kBlock, high - from)) {
        const BlockMask above = elements.above(from, std::min(kBlock, high - from));
        if (above != 0) return from + firstOf(above);
    }
    return high;
}

/// Whether an element from `low` up to and without `high` is below the pivot.
template <class Elements>
bool anyBelow(const Elements& elements, std::size_t low, std::size_t high) {
    for (; low < high; low += std::min(kBlock, high - low)) {
        if (elements.below(low, std::min(kBlock, high - low)) != 0) return true;
    }
    return false;
}

/// Ends the partition in its last block, where both scans meet.
template <class Elements>
std::size_t meet(Elements& elements, const Block& block, BlockMask above, BlockMask below,
                 std::size_t high) {
    std::size_t end = high;
    while (above != 0 && below != 0) {
        const std::size_t i = firstOf(above);
        const std::size_t j = lastOf(below);
        if (i > j) break;
        end = block.first + j;
        elements.exchange(block.first + i, end);
        dropFirst(above);
        dropLast(below);
    }
    if (above != 0) end = std::min(end, block.first + firstOf(above));
    return end < high ? end : firstAbove(elements, block.first + block.count, high);
}

/// Partitions the elements from `low` to `high`, of which the last is the pivot and stays; the
/// result is where I ends. `elements` has `above` and `below`, the masks of up to `kBlock` elements
/// from a place on against the pivot, `sides`, both of them, and `exchange` for two places.
template <class Elements>
std::size_t blockPartition(Elements& elements, std::size_t low, std::size_t high) {
    std::size_t left = low;  // from here up to `right` no element was looked at
    std::size_t right = high;
    Block lower;
    Block upper;
    while (right != left) {
        if (lower.open == 0 && upper.open == 0 && right - left <= kBlock) {
            const auto [above, below] = elements.sides(left, right - left);
            return meet(elements, Block{left, right - left}, above, below, high);
        }
        if (lower.open == 0) {
            const std::size_t count = std::min(kBlock, right - left);
            lower = {left, count, elements.above(left, count)};
            left += count;
        }
        if (upper.open == 0) {
            const std::size_t count = std::min(kBlock, right - left);
            right -= count;
            upper = {right, count, elements.below(right, count)};
        }
        while (lower.open != 0 && upper.open != 0) {
            elements.exchange(lower.first + firstOf(lower.open), upper.first + lastOf(upper.open));
            dropFirst(lower.open);
            dropLast(upper.open);
        }
    }
    if (lower.open != 0) {
        const BlockMask below = elements.below(lower.first, lower.count);
        return meet(elements, lower, lower.open, below, high);
    }
    if (upper.open == 0) return firstAbove(elements, left, high);
    return meet(elements, upper, elements.above(upper.first, upper.count), upper.open, high);
}

}  // namespace orvane

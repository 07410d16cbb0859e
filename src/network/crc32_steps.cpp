#include "network/crc32_steps.h"

#include <bit>
#include <cstring>

#if defined(__x86_64__) || defined(__i386__)
#define ORVANE_CAN_FOLD 1
#include <immintrin.h>
#endif

namespace orvane::crc {
namespace {

using Table = std::array<std::uint32_t, 256>;

constexpr Table firstTable() {
    Table table{};
    for (std::uint32_t entry = 0; entry < table.size(); ++entry) {
        std::uint32_t value = entry;
        for (int shift = 0; shift < 8; ++shift)
            value = (value & 1) != 0 ? value >> 1 ^ kPolynomial : value >> 1;
        table[entry] = value;
    }
    return table;
}

constexpr std::size_t kSlices = 16;

/// Table `n` has the register of its byte after `n` zero bytes more.
constexpr std::array<Table, kSlices> allTables() {
    std::array<Table, kSlices> tables{firstTable()};
    for (std::size_t slice = 1; slice < kSlices; ++slice) {
        for (std::size_t entry = 0; entry < 256; ++entry) {
            const std::uint32_t before = tables[slice - 1][entry];
            tables[slice][entry] = before >> 8 ^ tables[0][before & 0xFF];
        }
    }
    return tables;
}

constexpr std::array<Table, kSlices> kTables = allTables();

std::uint32_t littleEndian(const std::uint8_t* bytes) {
    std::uint32_t value = 0;
    std::memcpy(&value, bytes, sizeof(value));
    if constexpr (std::endian::native == std::endian::big) value = __builtin_bswap32(value);
    return value;
}

/// The part of four bytes, of which the first goes through the table `slice`.
std::uint32_t fourSlices(std::uint32_t word, std::size_t slice) {
    return kTables[slice][word & 0xFF] ^ kTables[slice - 1][word >> 8 & 0xFF] ^
           kTables[slice - 2][word >> 16 & 0xFF] ^ kTables[slice - 3][word >> 24];
}

}  // namespace

std::uint32_t byTable(std::uint32_t state, std::span<const std::uint8_t> bytes) {
    for (const std::uint8_t byte : bytes)
        state = state >> 8 ^ kTables[0][(state ^ byte) & 0xFF];
    return state;
}

std::uint32_t bySlices(std::uint32_t state, std::span<const std::uint8_t> bytes) {
    for (; bytes.size() >= kSlices; bytes = bytes.subspan(kSlices)) {
        const std::uint8_t* at = bytes.data();
        state = fourSlices(littleEndian(at) ^ state, 15) ^ fourSlices(littleEndian(at + 4), 11) ^
                fourSlices(littleEndian(at + 8), 7) ^ fourSlices(littleEndian(at + 12), 3);
    }
    return byTable(state, bytes);
}

#ifdef ORVANE_CAN_FOLD

namespace {

#define ORVANE_FOLDING __attribute__((target("pclmul,sse2")))

// A block of 128 bits, its first byte in the lowest place, is a reflected polynomial: its low half
// stands 64 powers of x above its high half. To move the block `distance` bits on, each half is
// multiplied by the power of x that it moves by, modulo the CRC's polynomial. A product of two
// reflected polynomials comes out one place too low, and the multiplier is 32 bits in a half of 64:
// together the exponents below.
struct Distance {
    std::uint64_t low;
    std::uint64_t high;
};
constexpr Distance distance(std::uint64_t bits) {
    return {std::uint64_t{powerOfX(bits + 32)} << 1, std::uint64_t{powerOfX(bits - 32)} << 1};
}

ORVANE_FOLDING inline __m128i load(const std::uint8_t* bytes) {
    return _mm_loadu_si128(static_cast<const __m128i*>(static_cast<const void*>(bytes)));
}

ORVANE_FOLDING inline __m128i load(const Distance& by) {
    return _mm_loadu_si128(static_cast<const __m128i*>(static_cast<const void*>(&by)));
}

/// Has the bytes fetched that are wanted in two pages' time: the processor by itself looks no
/// further than the end of a page, and large arrays come from memory. An address behind the last
/// byte does no harm.
ORVANE_FOLDING inline void fetchAhead(const std::uint8_t* at) {
    constexpr std::uintptr_t kAhead = 8192;
    const auto wanted = reinterpret_cast<std::uintptr_t>(at) + kAhead;
    _mm_prefetch(reinterpret_cast<const char*>(wanted), _MM_HINT_T0);
}

/// `block` moved on by a distance, onto the bytes that are there.
ORVANE_FOLDING inline __m128i fold(__m128i block, __m128i by, __m128i onto) {
    return _mm_xor_si128(
        _mm_xor_si128(_mm_clmulepi64_si128(block, by, 0x00), _mm_clmulepi64_si128(block, by, 0x11)),
        onto);
}

constexpr Distance kFourBlocks = distance(4 * 128);
constexpr Distance kOneBlock = distance(128);

}  // namespace

bool canFold() {
    return __builtin_cpu_supports("pclmul") != 0;
}

ORVANE_FOLDING std::uint32_t byFolding(std::uint32_t state, std::span<const std::uint8_t> bytes) {
    constexpr std::size_t kBlock = 16;
    constexpr std::size_t kStep = 4 * kBlock;
    if (bytes.size() < kStep) return bySlices(state, bytes);
    const std::uint8_t* at = bytes.data();
    // The register goes onto the first four bytes; from here on it is the bytes that carry it.
    __m128i first = _mm_xor_si128(load(at), _mm_cvtsi32_si128(static_cast<int>(state)));
    __m128i second = load(at + kBlock);
    __m128i third = load(at + 2 * kBlock);
    __m128i fourth = load(at + 3 * kBlock);
    const __m128i overFour = load(kFourBlocks);
    std::size_t left = bytes.size() - kStep;
    for (at += kStep; left >= kStep; at += kStep, left -= kStep) {
        fetchAhead(at);
        first = fold(first, overFour, load(at));
        second = fold(second, overFour, load(at + kBlock));
        third = fold(third, overFour, load(at + 2 * kBlock));
        fourth = fold(fourth, overFour, load(at + 3 * kBlock));
    }
    const __m128i overOne = load(kOneBlock);
    __m128i block = fold(fold(fold(first, overOne, second), overOne, third), overOne, fourth);
    for (; left >= kBlock; at += kBlock, left -= kBlock)
        block = fold(block, overOne, load(at));
    std::array<std::uint8_t, kBlock> folded;
    _mm_storeu_si128(static_cast<__m128i*>(static_cast<void*>(folded.data())), block);
    return bySlices(bySlices(0, folded), {at, left});
}

#else

bool canFold() {
    return false;
}

std::uint32_t byFolding(std::uint32_t state, std::span<const std::uint8_t> bytes) {
    return bySlices(state, bytes);
}

#endif

}  // namespace orvane::crc

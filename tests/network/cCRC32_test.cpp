#include "network/cCRC32.h"

#include "network/crc32_steps.h"
#include "support/raised_error.h"

#include <gtest/gtest.h>

#include <zlib.h>

#include <random>
#include <vector>

namespace orvane {
namespace {

using test::raisedBy;
using Bytes = std::vector<std::uint8_t>;

/// The rule itself: a bit at a time, without a table.
std::uint32_t plainCrc(std::span<const std::uint8_t> bytes) {
    std::uint32_t value = 0xFFFFFFFF;
    for (const std::uint8_t byte : bytes) {
        value ^= byte;
        for (int bit = 0; bit < 8; ++bit)
            value = value >> 1 ^ (0xEDB88320 & (0 - (value & 1)));
    }
    return ~value;
}

Bytes randomBytes(std::size_t count) {
    std::mt19937 random(32);
    Bytes bytes(count);
    for (std::uint8_t& byte : bytes)
        byte = static_cast<std::uint8_t>(random());
    return bytes;
}

std::uint32_t crcOf(const Array<std::uint8_t>& bytes) {
    return static_cast<std::uint32_t>(cCRC32().GetByteArrayCrc32(bytes));
}

TEST(cCRC32, KnownTexts) {
    const auto crc = [](std::string_view text) {
        return crcOf(Array<std::uint8_t>::of(Bytes(text.begin(), text.end())));
    };
    EXPECT_EQ(crc(""), 0U);
    EXPECT_EQ(crc("a"), 0xE8B7BE43U);
    EXPECT_EQ(crc("123456789"), 0xCBF43926U);
    EXPECT_EQ(crc("The quick brown fox jumps over the lazy dog"), 0x414FA339U);
}

TEST(cCRC32, BoundsOfTheArrayDoNotMatter) {
    Array<std::uint8_t> bytes(-3, 5);
    std::ranges::copy(std::string_view("123456789"), bytes.elements().begin());
    EXPECT_EQ(crcOf(bytes), 0xCBF43926U);
}

TEST(cCRC32, UnallocatedArrayAndOneOfSeveralDimensionsRaise9) {
    EXPECT_EQ(raisedBy([] { crcOf(Array<std::uint8_t>()); }), error::kSubscriptOutOfRange);
    EXPECT_EQ(raisedBy([] {
                  crcOf(Array<std::uint8_t>::withBounds({Bound{0, 2}, Bound{0, 2}}));
              }),
              error::kSubscriptOutOfRange);
}

TEST(cCRC32, EveryWayGivesWhatThePlainRuleGives) {
    const Bytes bytes = randomBytes(400);
    for (std::size_t length = 0; length <= 300; ++length) {
        for (const std::size_t offset : {0U, 1U, 3U, 8U, 15U, 16U, 77U}) {
            const auto part = std::span(bytes).subspan(offset, length);
            const std::uint32_t expected = plainCrc(part);
            EXPECT_EQ(~crc::byTable(~0U, part), expected);
            EXPECT_EQ(~crc::bySlices(~0U, part), expected);
            if (crc::canFold()) {
                EXPECT_EQ(~crc::byFolding(~0U, part), expected);
            }
            EXPECT_EQ(crc32(0, part), expected) << length << " from " << offset;
        }
    }
}

TEST(cCRC32, LargeBlocksGiveWhatZlibGives) {
    const Bytes bytes = randomBytes((3 << 20) + 17);
    std::mt19937 random(5);
    for (int i = 0; i < 40; ++i) {
        const std::size_t offset = random() % 1000;
        const std::size_t length = i == 0 ? bytes.size() - offset : random() % (1 << 20);
        const auto part = std::span(bytes).subspan(offset, length);
        const auto start = static_cast<std::uint32_t>(random());
        const auto expected =
            static_cast<std::uint32_t>(::crc32(start, part.data(), static_cast<uInt>(length)));
        EXPECT_EQ(crc32(start, part), expected);
        EXPECT_EQ(~crc::bySlices(~start, part), expected);
    }
}

TEST(cCRC32, PartsGiveTheCrcOfTheWhole) {
    const Bytes bytes = randomBytes(1000);
    const std::uint32_t whole = crc32(0, bytes);
    for (std::size_t cut = 0; cut <= bytes.size(); ++cut) {
        EXPECT_EQ(crc32(crc32(0, std::span(bytes).first(cut)), std::span(bytes).subspan(cut)),
                  whole);
    }
}

TEST(cCRC32, ZerosAreCountedWithoutBeingThere) {
    const Bytes zeros(5000);
    std::mt19937 random(6);
    for (std::size_t count = 0; count <= zeros.size(); count += count < 70 ? 1 : 97) {
        const auto start = static_cast<std::uint32_t>(random());
        EXPECT_EQ(crc32OfZeros(start, count), crc32(start, std::span(zeros).first(count))) << count;
    }
    // One gibibyte and a half of them, in two ways.
    std::uint32_t crc = 0x12345678;
    for (int i = 0; i < 3; ++i)
        crc = crc32OfZeros(crc, 1 << 29);
    EXPECT_EQ(crc, crc32OfZeros(0x12345678, std::uint64_t{3} << 29));
}

}  // namespace
}  // namespace orvane

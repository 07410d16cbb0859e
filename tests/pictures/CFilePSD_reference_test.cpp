#include "pictures/decoded_psd.h"
#include "pictures/random_bytes.h"

#include "support/rounds.h"

#include <gtest/gtest.h>

/// The reader and the reference over many files.
namespace orvane {
namespace {

using test::Bytes;
using test::DecodedPsd;
using test::PsdFile;
using test::RandomBytes;

/// How often files loaded and failed; those that the reference can't tell about are left out.
struct Tally {
    int loaded = 0;
    int failed = 0;

    testing::AssertionResult add(const Bytes& bytes) {
        const test::ReferenceImage expected = test::referencePsd(bytes);
        if (expected.unknown) return testing::AssertionSuccess();
        ++(expected.success ? loaded : failed);
        return DecodedPsd(bytes).isLike(expected);
    }
};

Bytes randomPlane(RandomBytes& random, int pixels) {
    Bytes plane;
    const int longest = random.oneIn(3) ? 128 : random.between(1, 10);
    while (pixels > 0) {
        if (random.oneIn(20)) plane.push_back(128);
        int count = random.between(1, longest);
        // Most planes end where their last packet does; some packets run one pixel too far.
        if (count > pixels) count = random.oneIn(30) ? count : pixels + (random.oneIn(12) ? 1 : 0);
        count = std::min(count, 128);
        if (count > 1 && random.oneIn(2)) test::add(plane, test::runPacket(count, random.byte()));
        else test::add(plane, test::literalPacket(random.bytes(count)));
        pixels -= count;
    }
    return plane;
}

PsdFile randomFile(RandomBytes& random) {
    constexpr int kChannels[] = {0, 1, 2, 3, 3, 3, 4, 4, 5, 16};
    PsdFile file;
    file.channels = kChannels[random.upTo(10)];
    file.compression = random.upTo(2);
    file.height = random.between(1, 7);
    file.width = random.oneIn(5) ? random.between(60, 300) : random.between(1, 12);
    const int pixels = static_cast<int>(file.height * file.width);
    const int planes = std::min(file.channels, 4);
    if (file.compression == 0) {
        file.data = random.bytes(pixels * std::min(file.channels + random.upTo(2), 4));
    } else {
        file.data = test::rowLengths(file.channels * file.height);
        for (int plane = 0; plane < planes; ++plane)
            test::add(file.data, randomPlane(random, pixels));
    }
    if (random.oneIn(12)) file.data.resize(file.data.size() * 3 / 4);
    if (random.oneIn(6)) test::add(file.data, random.bytes(random.upTo(20)));
    if (random.oneIn(4)) file.colorModeData = random.bytes(random.upTo(9));
    if (random.oneIn(4)) file.resources = random.bytes(random.upTo(9));
    if (random.oneIn(4)) file.layers = random.bytes(random.upTo(9));
    return file;
}

TEST(CFilePSDReference, AgreesWithTheReferenceOnThousandsOfFiles) {
    RandomBytes random(1);
    Tally tally;
    constexpr int kFiles = test::rounds(20000);
    for (int run = 0; run < kFiles; ++run)
        ASSERT_TRUE(tally.add(randomFile(random).bytes())) << "file " << run;
    // Neither outcome is rare.
    EXPECT_GT(tally.loaded, kFiles / 3);
    EXPECT_GT(tally.failed, kFiles / 5);
}

TEST(CFilePSDReference, AgreesWithTheReferenceOnDamagedFiles) {
    RandomBytes random(2);
    Tally tally;
    for (int run = 0; run < test::rounds(10000); ++run) {
        Bytes bytes = randomFile(random).bytes();
        random.mutate(bytes, 40);
        ASSERT_TRUE(tally.add(bytes)) << "file " << run;
    }
    EXPECT_GT(tally.loaded, test::rounds(500));
    EXPECT_GT(tally.failed, test::rounds(1000));
}

TEST(CFilePSDReference, AgreesWithTheReferenceOnRandomImageData) {
    RandomBytes random(3);
    Tally tally;
    for (int run = 0; run < test::rounds(10000); ++run) {
        PsdFile file = randomFile(random);
        file.data = random.bytes(random.upTo(400));
        ASSERT_TRUE(tally.add(file.bytes())) << "file " << run;
    }
    EXPECT_GT(tally.loaded, test::rounds(500));
}

TEST(CFilePSDReference, AgreesWithTheReferenceOnFilesCutAtEveryLength) {
    RandomBytes random(4);
    for (int run = 0; run < 60; ++run) {
        const Bytes bytes = randomFile(random).bytes();
        for (std::size_t length = 0; length <= bytes.size(); ++length) {
            const auto cut = std::span(bytes).first(length);
            ASSERT_TRUE(DecodedPsd(cut).isLike(test::referencePsd(cut)))
                << "file " << run << ", length " << length;
        }
    }
}

/// Every packet length at every place in a row, literal and repeated.
TEST(CFilePSDReference, PacketsOfEveryLengthAgreeWithTheReference) {
    for (int length = 2; length <= 128; ++length) {
        for (int before = 1; before <= 40; before += 3) {
            Bytes plane = test::literalPacket(test::countedBytes(before));
            test::add(plane, test::runPacket(length, 77));
            test::add(plane, test::literalPacket(test::countedBytes(length)));
            PsdFile file{.channels = 3, .height = 3, .width = (before + 2 * length + 2) / 3};
            const auto pixels = static_cast<int>(file.height * file.width);
            const int rest = pixels - before - 2 * length;
            if (rest > 0) test::add(plane, test::literalPacket(test::countedBytes(rest)));
            file.data = test::packedPlanes(3, 3, {plane, plane, plane});
            ASSERT_TRUE(agrees(file)) << length << " at " << before;
            ASSERT_TRUE(DecodedPsd(file).success) << length << " at " << before;
        }
    }
}

TEST(CFilePSDReference, AWideFileAgreesWithTheReference) {
    RandomBytes random(5);
    for (const int width : {4095, 4096, 4097, 9000}) {
        PsdFile file{.channels = 4, .height = 9, .width = width};
        std::vector<Bytes> planes;
        for (int plane = 0; plane < 4; ++plane)
            planes.push_back(test::literalPackets(random.bytes(width * 9), 128));
        file.data = test::packedPlanes(4, 9, planes);
        EXPECT_TRUE(agrees(file));
        EXPECT_TRUE(DecodedPsd(file).success);
    }
}

}  // namespace
}  // namespace orvane

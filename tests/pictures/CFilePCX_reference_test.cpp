#include "pictures/decoded_pcx.h"
#include "pictures/random_bytes.h"

#include "support/rounds.h"

#include <gtest/gtest.h>

/// The reader and the reference over many files.
namespace orvane {
namespace {

using test::Bytes;
using test::DecodedPcx;
using test::PcxFile;
using test::RandomBytes;

/// How often files loaded and failed; those that the reference can't tell about are left out.
struct Tally {
    int loaded = 0;
    int failed = 0;

    testing::AssertionResult add(const Bytes& bytes) {
        const test::ReferenceImage expected = test::referencePcx(bytes);
        if (expected.unknown) return testing::AssertionSuccess();
        ++(expected.success ? loaded : failed);
        return DecodedPcx(bytes).isLike(expected);
    }
};

/// Items of the run-length code for lines of these sizes: mostly as many bytes as they take.
Bytes randomBody(RandomBytes& random, const PcxFile& file) {
    Bytes body;
    const bool perLine = file.planes == 1;
    const int lines = perLine ? file.height : 1;
    for (int y = 0; y < lines; ++y) {
        int left = perLine ? file.bytesPerLine : file.bytesPerLine * file.height * file.planes;
        const int longest = random.oneIn(3) ? 63 : random.between(1, 8);
        while (left > 0) {
            int count = 1;
            if (random.oneIn(2)) {
                count = random.oneIn(20) ? 0 : random.between(1, longest);
                // Most lines end where their last run does.
                if (count > left && !random.oneIn(perLine ? 8 : 40)) count = left;
                test::add(body, test::pcxRun(count, random.byte()));
            } else {
                body.push_back(static_cast<std::uint8_t>(random.upTo(0xC0)));
            }
            left -= count;
        }
    }
    if (random.oneIn(12)) body.resize(body.size() * 3 / 4);
    return body;
}

PcxFile randomFile(RandomBytes& random) {
    constexpr int kPlanes[] = {1, 1, 1, 3, 3, 3, 4, 2, 0, 5};
    PcxFile file;
    file.planes = kPlanes[random.upTo(10)];
    file.width = random.oneIn(5) ? random.between(60, 200) : random.between(1, 12);
    file.height = random.between(1, 6);
    file.bytesPerLine = file.width + random.upTo(random.oneIn(4) ? 12 : 3) - 1;
    if (file.planes == 1 && random.oneIn(2)) file.bytesPerLine = (file.width + 3) / 4 * 4;
    file.xMin = random.upTo(10);
    file.yMin = random.upTo(10);
    file.palette = file.planes == 1 ? !random.oneIn(20) : random.oneIn(20);
    file.body = randomBody(random, file);
    return file;
}

TEST(CFilePCXReference, AgreesWithTheReferenceOnThousandsOfFiles) {
    RandomBytes random(1);
    Tally tally;
    constexpr int kFiles = test::rounds(20000);
    for (int run = 0; run < kFiles; ++run)
        ASSERT_TRUE(tally.add(randomFile(random).bytes())) << "file " << run;
    // Neither outcome is rare.
    EXPECT_GT(tally.loaded, kFiles / 4);
    EXPECT_GT(tally.failed, kFiles / 5);
}

TEST(CFilePCXReference, AgreesWithTheReferenceOnDamagedFiles) {
    RandomBytes random(2);
    Tally tally;
    for (int run = 0; run < test::rounds(10000); ++run) {
        Bytes bytes = randomFile(random).bytes();
        random.mutate(bytes, 72);
        ASSERT_TRUE(tally.add(bytes)) << "file " << run;
    }
    EXPECT_GT(tally.loaded, test::rounds(1000));
    EXPECT_GT(tally.failed, test::rounds(1000));
}

TEST(CFilePCXReference, AgreesWithTheReferenceOnRandomBytesBehindAHeader) {
    RandomBytes random(3);
    Tally tally;
    for (int run = 0; run < test::rounds(5000); ++run) {
        PcxFile file = randomFile(random);
        file.body = random.bytes(random.upTo(300));
        ASSERT_TRUE(tally.add(file.bytes())) << "file " << run;
    }
    EXPECT_GT(tally.loaded, test::rounds(500));
}

/// Every kind of small file, whole and cut at every length.
TEST(CFilePCXReference, AgreesWithTheReferenceOnFilesCutAtEveryLength) {
    RandomBytes random(4);
    for (int run = 0; run < 40; ++run) {
        PcxFile file = randomFile(random);
        const Bytes bytes = file.bytes();
        for (std::size_t length = 0; length <= bytes.size(); ++length) {
            const auto cut = std::span(bytes).first(length);
            ASSERT_TRUE(DecodedPcx(cut).isLike(test::referencePcx(cut)))
                << "file " << run << ", length " << length;
        }
    }
}

/// One plane, then three: every small width with every length of a line about it.
TEST(CFilePCXReference, AgreesWithTheReferenceOnEverySmallSize) {
    for (int width = 1; width <= 9; ++width) {
        for (int line = 0; line <= 12; ++line) {
            for (int height = 1; height <= 3; ++height) {
                ASSERT_TRUE(agrees(test::indexedPcx(width, height, line)));
                for (const int planes : {2, 3, 4, 5, 9})
                    ASSERT_TRUE(agrees(test::planarPcx(width, height, line, planes)));
            }
        }
    }
}

TEST(CFilePCXReference, RunsOfEveryLengthAgreeWithTheReference) {
    for (int length = 0; length <= 63; ++length) {
        for (int before = 0; before <= 70; ++before) {
            PcxFile file{.width = 67, .height = 2, .bytesPerLine = 68};
            file.body = test::pcxLiterals(before);
            test::add(file.body, test::pcxRun(length, 9));
            test::add(file.body, test::pcxLiterals(150));
            ASSERT_TRUE(agrees(file)) << length << " at " << before;
            file.planes = 3;
            file.palette = false;
            file.body.resize(static_cast<std::size_t>(before) + 2 + 68 * 6);
            ASSERT_TRUE(agrees(file)) << length << " at " << before;
        }
    }
}

TEST(CFilePCXReference, ALargeFileAgreesWithTheReference) {
    for (const int planes : {1, 3, 4}) {
        RandomBytes random(5);
        PcxFile file{.width = 701,
                     .height = 370,
                     .planes = planes,
                     .bytesPerLine = 702,
                     .palette = planes == 1};
        do
            file.body = randomBody(random, file);
        while (!DecodedPcx(file).success);
        EXPECT_TRUE(agrees(file));
    }
}

}  // namespace
}  // namespace orvane

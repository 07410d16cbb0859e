#include "frame/values/codepage.h"
#include "pictures/LoadPictureEx.h"
#include "pictures/pcx_file.h"
#include "pictures/psd_file.h"
#include "pictures/raised_failure.h"
#include "pictures/targa_file.h"
#include "platform/tables.h"
#include "support/temp_dir.h"
#include "support/torture.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <set>

/// Every operation of a load fails in turn: what comes of it is a picture or an error that hosts
/// know, and nothing stays open.
namespace orvane {
namespace {

using test::TortureRun;

/// A picture (true), or the number of the error.
struct Outcome {
    bool loaded = false;
    std::int32_t number = 0;
};

class PictureTorture : public test::TempDirTest {
protected:
    /// GDI+ is started by the first file that is tried and runs as long as the readers live.
    PictureTorture() {
        const WString name = fromAnsi(dir_.write("first.txt", "text"));
        Ref<PictureInfo> info = info_;
        EXPECT_TRUE(test::failureOf([&] { LoadPictureEx(name, info); }));
    }

    template <class Load>
    Outcome outcomeOf(Load&& load) {
        Outcome outcome;
        const auto failure = test::failureOf([&] { outcome.loaded = !load().isNothing(); });
        if (failure) outcome.number = failure->number;
        return outcome;
    }

    /// A slot that is there can always be read.
    const test::TortureOptions options_{{}, {"TlsGetValue"}};
    /// The thread's apartment is there before, with what it keeps from call to call.
    Ref<PictureInfo> info_ = make<PictureInfo>();
    const std::vector<std::uint8_t> targa_ =
        test::TargaFile{.width = 3, .height = 2, .body = test::countedBytes(18)}.bytes();
};

/// A file for each of the library's own readers, which are tried last.
class ReaderTorture : public PictureTorture,
                      public testing::WithParamInterface<std::vector<std::uint8_t> (*)()> {};

std::vector<std::uint8_t> targaFile() {
    return test::TargaFile{.width = 3, .height = 2, .body = test::countedBytes(18)}.bytes();
}
std::vector<std::uint8_t> pcxFile() {
    return test::indexedPcx(3, 2, 4).bytes();
}
std::vector<std::uint8_t> psdFile() {
    const test::Bytes plane = test::literalPackets(test::countedBytes(6), 4);
    return test::PsdFile{
        .height = 2, .width = 3, .data = test::packedPlanes(3, 2, {plane, plane, plane})}
        .bytes();
}
INSTANTIATE_TEST_SUITE_P(Readers, ReaderTorture, testing::Values(&targaFile, &pcxFile, &psdFile));

TEST_P(ReaderTorture, LoadPictureExGivesAPictureOrAnErrorThatHostsKnow) {
    const WString name = fromAnsi(dir_.write("picture", GetParam()()));
    std::set<std::int32_t> seen;
    bool gotThrough = false;
    const std::size_t failed = test::torture(
        [&] {
            Ref<PictureInfo> info = info_;
            return outcomeOf([&] { return LoadPictureEx(name, info); });
        },
        [&](const Outcome& outcome, const TortureRun& run) {
            seen.insert(outcome.number);
            const std::set<std::int32_t> known{0, error::kFileNotFound, error::kInvalidPicture,
                                               error::kInternal, error::kOutOfMemory};
            EXPECT_TRUE(known.contains(outcome.number)) << outcome.number << ": " << run.failed;
            EXPECT_EQ(outcome.loaded, outcome.number == 0) << run.failed;
            if (run.failedAt == 0) gotThrough = outcome.loaded;
        },
        options_);
    EXPECT_GT(failed, 10U);
    EXPECT_TRUE(gotThrough);
    EXPECT_EQ(seen, (std::set<std::int32_t>{0, error::kFileNotFound, error::kInvalidPicture,
                                            error::kInternal, error::kOutOfMemory}));
}

TEST_F(PictureTorture, LoadPictureExOfNoPictureRaisesInvalidPictureOrFileNotFound) {
    const WString name = fromAnsi(dir_.write("text.txt", "text"));
    test::torture(
        [&] {
            Ref<PictureInfo> info = info_;
            return outcomeOf([&] { return LoadPictureEx(name, info); });
        },
        [&](const Outcome& outcome, const TortureRun& run) {
            // Asked first by the front and then by the reader through GDI+, which fails quietly.
            const auto asked = std::ranges::count_if(run.calls, [](const std::string& call) {
                return call.starts_with("GetFileAttributesA");
            });
            const bool missing = run.failed == "GetFileAttributesA" && asked == 1;
            EXPECT_EQ(outcome.number, missing ? error::kFileNotFound : error::kInvalidPicture)
                << run.failed;
        },
        options_);
}

TEST_F(PictureTorture, LoadResPictureByDataGivesAPictureOrAnErrorThatHostsKnow) {
    test::ScopedTarget tempPath(platform::kernel32.GetTempPathA, [this] { return dir_.file(""); });
    const Array<std::uint8_t> data = Array<std::uint8_t>::of(targa_);
    bool gotThrough = false;
    const std::size_t failed = test::torture(
        [&] {
            Ref<PictureInfo> info = info_;
            return outcomeOf([&] { return LoadResPictureByData(data, info); });
        },
        [&](const Outcome& outcome, const TortureRun& run) {
            const std::set<std::int32_t> known{
                0,
                error::kFileNotFound,
                error::kInvalidPicture,
                error::kInternal,
                error::kOutOfMemory,
                error::kFileExists,     // the new name could not be deleted
                error::kDiskFull,       // it could not be written
                error::kPathAccess,     // it could not be made
                error::kPathNotFound};  // there is no temporary folder
            EXPECT_TRUE(known.contains(outcome.number)) << outcome.number << ": " << run.failed;
            EXPECT_EQ(outcome.loaded, outcome.number == 0) << run.failed;
            if (run.failedAt == 0) gotThrough = outcome.loaded;
        },
        options_);
    EXPECT_GT(failed, 15U);
    EXPECT_TRUE(gotThrough);
}

}  // namespace
}  // namespace orvane

#include "frame/binary_file.h"

#include "frame/values/codepage.h"
#include "platform/kernel32.h"
#include "support/raised_error.h"
#include "support/recorder.h"
#include "support/temp_dir.h"

#include <gtest/gtest.h>

#include <numeric>

namespace orvane {
namespace {

using test::raisedBy;
using test::ScopedTarget;
using Bytes = std::vector<std::uint8_t>;

class BinaryFileTest : public test::TempDirTest {
protected:
    WString name(std::string_view entry) const { return fromAnsi(dir_.file(entry)); }
    WString written(std::string_view entry, const Bytes& bytes) const {
        return fromAnsi(dir_.write(entry, bytes));
    }
};

/// Bytes that tell their place.
Bytes numbered(std::size_t count) {
    Bytes bytes(count);
    for (std::size_t i = 0; i < count; ++i) {
        bytes[i] = static_cast<std::uint8_t>(i * 31 + i / 256);
    }
    return bytes;
}

TEST_F(BinaryFileTest, ReadsBytesAndNumbersWithTheLowByteFirst) {
    BinaryFile file(written("a", {0x42, 0x4D, 1, 2, 3, 4, 0xFF, 0xFF}), FileMode::read);
    EXPECT_EQ(file.lof(), 8);
    EXPECT_EQ(file.position(), 1);
    EXPECT_EQ(file.get<std::uint16_t>(), 19778);
    EXPECT_EQ(file.get<std::uint32_t>(), 0x04030201U);
    EXPECT_EQ(file.get<std::int16_t>(), -1);
    EXPECT_EQ(file.position(), 9);
    EXPECT_FALSE(file.pastEnd());
}

TEST_F(BinaryFileTest, PositionsCountFrom1) {
    BinaryFile file(written("a", {10, 11, 12, 13}), FileMode::read);
    file.seek(3);
    EXPECT_EQ(file.get<std::uint8_t>(), 12);
    file.seek(1);
    EXPECT_EQ(file.get<std::uint8_t>(), 10);
    EXPECT_EQ(file.position(), 2);
    EXPECT_EQ(raisedBy([&] { file.seek(0); }), 63);
    EXPECT_EQ(raisedBy([&] { file.seek(-1); }), 63);
    EXPECT_EQ(file.position(), 2);
}

TEST_F(BinaryFileTest, ReadPastTheEndGivesZeroBytesAndMovesOn) {
    BinaryFile file(written("a", {1, 2, 3}), FileMode::read);
    Bytes out(5, 0xEE);
    file.get(out);
    EXPECT_EQ(out, (Bytes{1, 2, 3, 0, 0}));
    EXPECT_EQ(file.position(), 6);
    EXPECT_TRUE(file.pastEnd());
    EXPECT_EQ(file.get<std::uint32_t>(), 0U);
    EXPECT_EQ(file.get<std::uint8_t>(), 0);
    EXPECT_EQ(file.position(), 11);
    file.seek(2);
    EXPECT_EQ(file.get<std::uint16_t>(), 0x0302);
    EXPECT_TRUE(file.pastEnd());
}

TEST_F(BinaryFileTest, ReadUpToTheEndIsNotPastIt) {
    BinaryFile file(written("a", {1, 2, 3}), FileMode::read);
    Bytes out(3);
    file.get(out);
    file.get(std::span<std::uint8_t>());
    EXPECT_FALSE(file.pastEnd());
    EXPECT_TRUE(file.peekBuffered().empty());
    EXPECT_FALSE(file.pastEnd());
}

TEST_F(BinaryFileTest, BytesBehindTheEndCostNoPlatformCalls) {
    BinaryFile file(written("a", {1}), FileMode::read);
    file.get<std::uint16_t>();
    const test::Recorder recorder(platform::kernel32);
    for (int i = 0; i < 1000; ++i)
        EXPECT_EQ(file.get<std::uint8_t>(), 0);
    EXPECT_EQ(recorder.calls().size(), 0U);
}

TEST_F(BinaryFileTest, ReadsOfEverySizeGiveTheSameBytes) {
    const Bytes content = numbered(300000);
    const WString fileName = written("big", content);
    for (const std::size_t piece : {1UL, 3UL, 4096UL, 65535UL, 65536UL, 65537UL, 200000UL}) {
        BinaryFile file(fileName, FileMode::read);
        Bytes read;
        Bytes out(piece);
        while (read.size() < content.size()) {
            file.get(out);
            read.insert(read.end(), out.begin(), out.end());
        }
        ASSERT_EQ(file.position(), static_cast<std::int64_t>(read.size()) + 1);
        read.resize(content.size());
        ASSERT_EQ(read, content) << piece;
    }
}

TEST_F(BinaryFileTest, SmallReadsShareOnePlatformRead) {
    BinaryFile file(written("a", numbered(1000)), FileMode::read);
    const test::Recorder recorder(platform::kernel32);
    for (int i = 0; i < 1000; ++i)
        file.get<std::uint8_t>();
    EXPECT_LE(recorder.count("ReadFile"), 2U);
    EXPECT_EQ(recorder.count("SetFilePointer"), 0U);
}

TEST_F(BinaryFileTest, ShortReadsOfThePlatformAreContinued) {
    const Bytes content = numbered(100);
    BinaryFile file(written("a", content), FileMode::read);
    const auto real = platform::kernel32.ReadFile;
    const ScopedTarget fake(
        platform::kernel32.ReadFile,
        [&](platform::FileHandle handle, std::span<std::uint8_t> buffer, std::uint32_t& read) {
            return real(handle, buffer.first(std::min<std::size_t>(buffer.size(), 7)), read);
        });
    Bytes out(100);
    file.get(out);
    EXPECT_EQ(out, content);
}

TEST_F(BinaryFileTest, PeekedBytesAreThoseOfTheNextReads) {
    const Bytes content = numbered(70000);
    BinaryFile file(written("a", content), FileMode::read);
    Bytes read;
    for (auto view = file.peekBuffered(); !view.empty(); view = file.peekBuffered()) {
        const std::size_t taken = std::min<std::size_t>(view.size(), 10000);
        read.insert(read.end(), view.begin(), view.begin() + static_cast<std::ptrdiff_t>(taken));
        file.skip(taken);
    }
    EXPECT_EQ(read, content);
    EXPECT_EQ(file.position(), 70001);
}

TEST_F(BinaryFileTest, SkipsBeyondTheBlock) {
    const Bytes content = numbered(200000);
    BinaryFile file(written("a", content), FileMode::read);
    EXPECT_EQ(file.get<std::uint8_t>(), content[0]);
    file.skip(150000);
    EXPECT_EQ(file.get<std::uint8_t>(), content[150001]);
    file.skip(100000);
    EXPECT_EQ(file.position(), 250003);
    EXPECT_FALSE(file.pastEnd());
    EXPECT_EQ(file.get<std::uint8_t>(), 0);
    EXPECT_TRUE(file.pastEnd());
}

TEST_F(BinaryFileTest, CreatesTheFileToWrite) {
    {
        BinaryFile file(name("new"), FileMode::write);
        file.put(Bytes{1, 2});
        file.put(std::uint16_t{0x0403});
        file.put(std::int32_t{-2});
        file.put(std::uint8_t{9});
        EXPECT_EQ(file.position(), 10);
        EXPECT_EQ(file.lof(), 9);
    }
    EXPECT_EQ(dir_.read("new"), (Bytes{1, 2, 3, 4, 0xFE, 0xFF, 0xFF, 0xFF, 9}));
}

TEST_F(BinaryFileTest, KeepsTheContentOfAFileThatIsThere) {
    const WString fileName = written("a", {1, 2, 3, 4});
    {
        BinaryFile file(fileName, FileMode::write);
        file.seek(2);
        file.put(std::uint8_t{9});
    }
    EXPECT_EQ(dir_.read("a"), (Bytes{1, 9, 3, 4}));
}

TEST_F(BinaryFileTest, ReadsBackWhatItWrote) {
    BinaryFile file(written("a", {1, 2, 3, 4}), FileMode::readWrite);
    EXPECT_EQ(file.get<std::uint8_t>(), 1);
    file.put(std::uint8_t{8});
    EXPECT_EQ(file.get<std::uint8_t>(), 3);
    file.seek(2);
    EXPECT_EQ(file.get<std::uint8_t>(), 8);
    file.seek(5);
    EXPECT_EQ(file.get<std::uint8_t>(), 0);
    file.seek(5);
    file.put(std::uint8_t{5});
    file.seek(4);
    EXPECT_EQ(file.get<std::uint16_t>(), 0x0504);
    EXPECT_EQ(file.lof(), 5);
}

TEST_F(BinaryFileTest, WrongDirectionRaises75) {
    const WString fileName = written("a", {1, 2});
    BinaryFile reading(fileName, FileMode::read);
    EXPECT_EQ(raisedBy([&] { reading.put(std::uint8_t{1}); }), 75);
    BinaryFile writing(name("b"), FileMode::write);
    EXPECT_EQ(raisedBy([&] { writing.get<std::uint8_t>(); }), 75);
    EXPECT_EQ(dir_.read("a"), (Bytes{1, 2}));
}

TEST_F(BinaryFileTest, UseOfAClosedFileRaises52) {
    BinaryFile file(written("a", {1, 2, 3}), FileMode::readWrite);
    file.get<std::uint8_t>();
    file.close();
    file.close();
    EXPECT_FALSE(file.isOpen());
    Bytes out(1);
    EXPECT_EQ(raisedBy([&] { file.get<std::uint8_t>(); }), 52);
    EXPECT_EQ(raisedBy([&] { file.get(out); }), 52);
    EXPECT_EQ(raisedBy([&] { file.get(std::span<std::uint8_t>()); }), 52);
    EXPECT_EQ(raisedBy([&] { file.peekBuffered(); }), 52);
    EXPECT_EQ(raisedBy([&] { file.skip(0); }), 52);
    EXPECT_EQ(raisedBy([&] { file.put(std::uint8_t{1}); }), 52);
    EXPECT_EQ(raisedBy([&] { file.seek(1); }), 52);
    EXPECT_EQ(raisedBy([&] { file.position(); }), 52);
    EXPECT_EQ(raisedBy([&] { file.lof(); }), 52);
}

TEST_F(BinaryFileTest, OpensOneFileAtATime) {
    const WString fileName = written("a", {1});
    BinaryFile file(fileName, FileMode::read);
    EXPECT_EQ(raisedBy([&] { file.open(fileName, FileMode::read); }), 55);
    file.get<std::uint16_t>();
    file.close();
    file.open(fileName, FileMode::read);
    EXPECT_EQ(file.position(), 1);
    EXPECT_FALSE(file.pastEnd());
    EXPECT_EQ(file.get<std::uint8_t>(), 1);
}

TEST_F(BinaryFileTest, MissingFileRaises53) {
    EXPECT_EQ(raisedBy([&] { BinaryFile(name("none"), FileMode::read); }), 53);
    EXPECT_FALSE(dir_.has("none"));
}

TEST_F(BinaryFileTest, NameWithANulRaises52) {
    const WString fileName = written("a", {1});
    EXPECT_EQ(raisedBy([&] { BinaryFile(fileName + WStringView(u"\0x", 2), FileMode::read); }), 52);
}

TEST_F(BinaryFileTest, ClosesTheFileInEveryCase) {
    const WString fileName = written("a", numbered(10));
    const test::Recorder recorder(platform::kernel32);
    {
        BinaryFile file(fileName, FileMode::read);
        file.get<std::uint8_t>();
    }
    {
        BinaryFile file(fileName, FileMode::read);
        file.close();
    }
    EXPECT_EQ(recorder.count("CloseHandle"), 2U);
    EXPECT_EQ(recorder.leftOpen(), std::vector<std::string>());
}

TEST_F(BinaryFileTest, FailedPlatformCallsRaiseAndLeaveThePosition) {
    BinaryFile file(written("a", numbered(10)), FileMode::readWrite);
    file.seek(3);
    {
        const ScopedTarget fake(platform::kernel32.ReadFile,
                                [](platform::FileHandle, std::span<std::uint8_t>, std::uint32_t&) {
                                    platform::setLastError(33);
                                    return false;
                                });
        EXPECT_EQ(raisedBy([&] { file.get<std::uint8_t>(); }), 70);
    }
    {
        const ScopedTarget fake(
            platform::kernel32.WriteFile,
            [](platform::FileHandle, std::span<const std::uint8_t>, std::uint32_t&) {
                platform::setLastError(platform::kErrorDiskFull);
                return false;
            });
        EXPECT_EQ(raisedBy([&] { file.put(std::uint8_t{1}); }), 61);
    }
    {
        const ScopedTarget fake(platform::kernel32.GetFileSize, [](platform::FileHandle) {
            platform::setLastError(platform::kErrorInvalidHandle);
            return std::int64_t{-1};
        });
        EXPECT_EQ(raisedBy([&] { file.lof(); }), 52);
    }
    EXPECT_EQ(file.position(), 3);
    EXPECT_EQ(file.get<std::uint8_t>(), numbered(10)[2]);
}

TEST_F(BinaryFileTest, WriteThatMakesNoHeadwayRaises61) {
    BinaryFile file(name("a"), FileMode::write);
    const ScopedTarget fake(
        platform::kernel32.WriteFile,
        [](platform::FileHandle, std::span<const std::uint8_t>, std::uint32_t& count) {
            count = 0;
            return true;
        });
    EXPECT_EQ(raisedBy([&] { file.put(std::uint8_t{1}); }), 61);
}

TEST(RuntimeErrorFor, KnowsTheErrorsOfFileWork) {
    const std::pair<std::uint32_t, std::int32_t> pairs[] = {
        {2, 53},   {3, 76},   {4, 67},   {5, 75},  {6, 52},  {8, 7},      {14, 7},   {15, 76},
        {19, 70},  {32, 70},  {33, 70},  {39, 61}, {80, 58}, {87, 5},     {112, 61}, {123, 52},
        {161, 76}, {183, 58}, {206, 52}, {1, 57},  {0, 57},  {99999, 57},
    };
    for (const auto& [platformError, number] : pairs) {
        EXPECT_EQ(runtimeErrorFor(platformError), number) << platformError;
    }
}

}  // namespace
}  // namespace orvane

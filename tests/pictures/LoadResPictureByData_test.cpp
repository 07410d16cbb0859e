#include "pictures/LoadPictureEx.h"

#include "frame/automation/host_picture.h"
#include "frame/binary_file.h"
#include "frame/values/codepage.h"
#include "pictures/PictureFormats_Global.h"
#include "pictures/picture_pixels.h"
#include "pictures/raised_failure.h"
#include "pictures/targa_file.h"
#include "platform/tables.h"
#include "support/raised_error.h"
#include "support/recorder.h"
#include "support/temp_dir.h"

#include <gtest/gtest.h>

#include <optional>

namespace orvane {
namespace {

using platform::kernel32;
using test::raisedBy;
using test::Recorder;
using test::ScopedTarget;

using Bytes = std::vector<std::uint8_t>;
using Names = std::vector<std::string>;

Array<std::uint8_t> arrayOf(const Bytes& bytes) {
    return Array<std::uint8_t>::of(bytes);
}

Bytes targa() {
    return test::TargaFile{.width = 3, .height = 2, .body = test::countedBytes(18)}.bytes();
}

/// Loads by way of a temporary folder of the test's own.
class ResPicture : public test::TempDirTest {
protected:
    ResPicture() : tempPath_(kernel32.GetTempPathA, [this] { return dir_.file(""); }) {}

    Picture load(const Bytes& bytes) { return LoadResPictureByData(arrayOf(bytes), info_); }
    void expectFolderEmpty() { EXPECT_EQ(dir_.entries(), Names()); }

    ScopedTarget<std::string()> tempPath_;
    Ref<PictureInfo> info_;
};

/// A reader that notes what the temporary file holds and raises what it is told.
class ProbeReader final : public IFileFormat {
public:
    explicit ProbeReader(Bytes& seen) : seen_(seen) {}
    std::optional<RuntimeError> raises;

    bool Verify(WStringView) override { return true; }
    Picture LoadPicture(WStringView fileName, const Ref<PictureInfo>&) override {
        BinaryFile file(fileName, FileMode::read);
        seen_.resize(static_cast<std::size_t>(file.lof()));
        file.get(seen_);
        if (raises) throw *raises;
        return emptyPicture();
    }

private:
    Bytes& seen_;
};

TEST_F(ResPicture, IsLoadedFromItsBytes) {
    const Picture picture = load(targa());
    EXPECT_EQ(test::factsOf(picture).width, 3);
    ASSERT_TRUE(info_);
    EXPECT_EQ(info_->PictureType(), orvPictureTypeEx::orvPteTGA);
    expectFolderEmpty();
}

TEST_F(ResPicture, WritesAFileLoadsItAndDeletesIt) {
    Bytes seen;
    info_ = make<PictureInfo>();
    EnsureFormats().common = std::make_unique<ProbeReader>(seen);
    std::vector<platform::OperationBase*> operations = test::operationsOf(kernel32);
    std::erase(operations, &kernel32.TlsGetValue);
    Recorder recorder(operations);
    load({1, 2, 3, 4, 5});
    ASSERT_TRUE(test::matches(recorder.linesOf("GetTempFileNameA").at(0),
                              "GetTempFileNameA(*, \"TMP\") -> *"));
    const std::string path = recorder.calls()[1].result;
    const std::string file = recorder.calls()[3].result;
    EXPECT_TRUE(recorder.saw({
        "GetTempPathA() -> *",
        "GetTempFileNameA(*, \"TMP\") -> " + path,
        "DeleteFileA(" + path + ") -> true",
        "CreateFileA(" + path + ", 1073741824, 1) -> " + file,
        "WriteFile(" + file + ", <5 bytes>, 5) -> true",
        "CloseHandle(" + file + ") -> true",
        "GetFileAttributesA(" + path + ") -> *",
        "CreateFileA(" + path + ", 2147483648, 3) -> *",
        "GetFileSize(*) -> 5",
        "ReadFile(*, 5) -> true",
        "ReadFile(*, 0) -> true",
        "CloseHandle(*) -> true",
        "DeleteFileA(" + path + ") -> true",
    }));
    EXPECT_EQ(seen, (Bytes{1, 2, 3, 4, 5}));
    expectFolderEmpty();
}

TEST_F(ResPicture, WritesTheWholeArrayWhateverItsBounds) {
    Bytes seen;
    info_ = make<PictureInfo>();
    EnsureFormats().common = std::make_unique<ProbeReader>(seen);
    Array<std::uint8_t> data(-7, -3);
    for (std::int32_t index = -7; index <= -3; ++index) {
        data.at(index) = static_cast<std::uint8_t>(index + 100);
    }
    LoadResPictureByData(data, info_);
    EXPECT_EQ(seen, (Bytes{93, 94, 95, 96, 97}));
}

TEST_F(ResPicture, LeavesNoFileWhenNoReaderTakesIt) {
    info_ = make<PictureInfo>();
    info_->SetInfo({11, 12, 13, {}, {}}, orvPictureTypeEx::orvPtePSD);
    EXPECT_EQ(raisedBy([this] { load({'t', 'e', 'x', 't'}); }), error::kInvalidPicture);
    EXPECT_EQ(info_->PictureType(), orvPictureTypeEx::orvPteNothing);
    expectFolderEmpty();
}

TEST_F(ResPicture, OfAnUnallocatedArrayIsNoPicture) {
    EXPECT_EQ(raisedBy([this] { LoadResPictureByData(Array<std::uint8_t>(), info_); }),
              error::kInvalidPicture);
    EXPECT_EQ(raisedBy([this] { LoadResPictureByData(Array<std::uint8_t>::empty(), info_); }),
              error::kInvalidPicture);
    expectFolderEmpty();
}

TEST_F(ResPicture, RaisesAReadersErrorWithAllItTells) {
    Bytes seen;
    info_ = make<PictureInfo>();
    RuntimeError failure(error::kInternal, u"Can't select bitmap.");
    failure.source = u"the source";
    failure.helpFile = u"help.hlp";
    failure.helpContext = 1234;
    auto probe = std::make_unique<ProbeReader>(seen);
    probe->raises = failure;
    EnsureFormats().common = std::move(probe);
    const auto raised = test::failureOf([this] { load({1}); });
    ASSERT_TRUE(raised);
    EXPECT_EQ(raised->number, error::kInternal);
    EXPECT_EQ(raised->description, u"Can't select bitmap.");
    EXPECT_EQ(raised->source, u"the source");
    EXPECT_EQ(raised->helpFile, u"help.hlp");
    EXPECT_EQ(raised->helpContext, 1234);
    expectFolderEmpty();
}

TEST_F(ResPicture, DeletesTheFileBeforeTheErrorComesBack) {
    Recorder recorder(kernel32);
    raisedBy([this] { load({'t', 'e', 'x', 't'}); });
    EXPECT_EQ(recorder.names().back(), "DeleteFileA");
    EXPECT_EQ(recorder.count("DeleteFileA"), 2U);
}

TEST_F(ResPicture, PassesAWriteErrorOnAndLeavesTheName) {
    ScopedTarget fake(kernel32.WriteFile, [](auto&&...) {
        platform::setLastError(platform::kErrorDiskFull);
        return false;
    });
    Recorder recorder(kernel32);
    EXPECT_EQ(raisedBy([this] { load(targa()); }), error::kDiskFull);
    EXPECT_EQ(dir_.entries().size(), 1U);
    EXPECT_EQ(recorder.leftOpen(), Names());
    EXPECT_FALSE(info_) << "nothing was loaded";
}

TEST_F(ResPicture, PassesTheErrorOfTheCloseOnAndLeavesTheName) {
    const auto real = kernel32.CloseHandle;
    int closed = 0;
    ScopedTarget fake(kernel32.CloseHandle, [&](platform::FileHandle file) {
        ++closed;
        EXPECT_TRUE(real(file));
        platform::setLastError(platform::kErrorDiskFull);
        return false;
    });
    EXPECT_EQ(raisedBy([this] { load(targa()); }), error::kDiskFull);
    EXPECT_EQ(closed, 1) << "the file that was written is closed, and none was loaded from";
    EXPECT_EQ(dir_.entries().size(), 1U);
    EXPECT_FALSE(info_);
}

TEST_F(ResPicture, PassesTheErrorOfAFileThatCanNotBeMadeOn) {
    ScopedTarget fake(kernel32.CreateFileA, [](auto&&...) {
        platform::setLastError(platform::kErrorAccessDenied);
        return platform::FileHandle::none;
    });
    EXPECT_EQ(raisedBy([this] { load(targa()); }), error::kPathAccess);
}

TEST_F(ResPicture, IgnoresThatTheNewNameCanNotBeDeleted) {
    ScopedTarget fake(kernel32.DeleteFileA, [](auto&&...) {
        platform::setLastError(platform::kErrorAccessDenied);
        return false;
    });
    // The name stays taken, and a file that is there is not written over.
    EXPECT_EQ(raisedBy([this] { load(targa()); }), error::kFileExists);
    EXPECT_EQ(dir_.entries().size(), 1U);
}

TEST_F(ResPicture, PassesTheErrorOfTheNameOn) {
    ScopedTarget fake(kernel32.GetTempFileNameA, [](auto&&...) {
        platform::setLastError(platform::kErrorPathNotFound);
        return std::string();
    });
    EXPECT_EQ(raisedBy([this] { load(targa()); }), error::kPathNotFound);
    expectFolderEmpty();
}

}  // namespace
}  // namespace orvane

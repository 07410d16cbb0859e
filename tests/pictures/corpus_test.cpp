#include "frame/values/codepage.h"
#include "pictures/LoadPictureEx.h"
#include "pictures/decoded_targa.h"
#include "pictures/picture_pixels.h"
#include "pictures/raised_failure.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>

/// Files that other programs made, from beside the checkout.
namespace orvane {
namespace {

namespace fs = std::filesystem;

using test::Bytes;

fs::path corpus() {
    const char* chosen = std::getenv("ORVANE_CORPUS");
    const fs::path root = chosen != nullptr
                              ? fs::path(chosen)
                              : fs::path(ORVANE_SOURCE_DIR) / ".." / "shared" / "corpus";
    return root / "pictures" / "tga";
}

std::vector<fs::path> corpusFiles() {
    std::vector<fs::path> files;
    std::error_code missing;
    for (const fs::directory_entry& entry : fs::directory_iterator(corpus(), missing)) {
        files.push_back(entry.path());
    }
    std::ranges::sort(files);
    return files;
}

Bytes bytesOf(const fs::path& path) {
    std::ifstream file(path, std::ios::binary);
    Bytes bytes;
    std::transform(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>(),
                   std::back_inserter(bytes),
                   [](char unit) { return static_cast<std::uint8_t>(unit); });
    return bytes;
}

class TargaCorpus : public testing::Test {
protected:
    void SetUp() override {
        if (files_.empty()) {
            GTEST_SKIP() << "the corpus is not there (" << corpus().string() << ")";
        }
    }

    const std::vector<fs::path> files_ = corpusFiles();
};

TEST_F(TargaCorpus, EveryFileDecodesAsTheReferenceSays) {
    int loaded = 0;
    for (const fs::path& path : files_) {
        const Bytes bytes = bytesOf(path);
        EXPECT_TRUE(test::agrees(bytes)) << path.filename();
        if (test::referenceTarga(bytes).success) ++loaded;
    }
    EXPECT_GT(loaded, 0);
    std::printf("%d of %zu files load\n", loaded, files_.size());
}

TEST_F(TargaCorpus, EveryFileLoadsOrIsNoPicture) {
    for (const fs::path& path : files_) {
        const test::ReferenceImage expected = test::referenceTarga(bytesOf(path));
        Ref<PictureInfo> info;
        Picture picture;
        const auto failure =
            test::failureOf([&] { picture = LoadPictureEx(fromAnsi(path.string()), info); });
        ASSERT_EQ(failure.has_value(), !expected.success) << path.filename();
        if (failure) {
            EXPECT_EQ(failure->number, error::kInvalidPicture) << path.filename();
            continue;
        }
        EXPECT_EQ(info->PictureType(), orvPictureTypeEx::orvPteTGA);
        EXPECT_EQ(info->Width(), expected.width);
        EXPECT_EQ(info->Height(), expected.height);
        EXPECT_EQ(test::pixelsOf(picture), expected.pixels) << path.filename();
    }
}

}  // namespace
}  // namespace orvane

#include "frame/values/codepage.h"
#include "pictures/LoadPictureEx.h"
#include "pictures/decoded_pcx.h"
#include "pictures/decoded_psd.h"
#include "pictures/decoded_targa.h"
#include "pictures/drawn_reference.h"
#include "pictures/picture_pixels.h"
#include "pictures/raised_failure.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <ostream>

/// Files that other programs made, from beside the checkout.
namespace orvane {
namespace {

namespace fs = std::filesystem;

using test::Bytes;

/// One of the library's own decoders, and the folder of its files.
struct Format {
    const char* folder;
    orvPictureTypeEx type;
    test::DecodedFile::Read read;
    test::ReferenceImage (*reference)(std::span<const std::uint8_t>);
};

void PrintTo(const Format& format, std::ostream* out) {
    *out << format.folder;
}

constexpr Format kFormats[] = {
    {"tga", orvPictureTypeEx::orvPteTGA, &CFileTGA::ReadTGA, &test::referenceTarga},
    {"pcx", orvPictureTypeEx::orvPtePCX, &CFilePCX::ReadPCX, &test::referencePcx},
    {"psd", orvPictureTypeEx::orvPtePSD, &CFilePSD::ReadPSD, &test::referencePsd},
};

fs::path corpus(const char* folder) {
    const char* chosen = std::getenv("ORVANE_CORPUS");
    const fs::path root = chosen != nullptr
                              ? fs::path(chosen)
                              : fs::path(ORVANE_SOURCE_DIR) / ".." / "shared" / "corpus";
    return root / "pictures" / folder;
}

std::vector<fs::path> filesIn(const fs::path& folder) {
    std::vector<fs::path> files;
    std::error_code missing;
    for (const fs::directory_entry& entry : fs::directory_iterator(folder, missing)) {
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

class PictureCorpus : public testing::TestWithParam<Format> {
protected:
    void SetUp() override {
        files_ = filesIn(corpus(GetParam().folder));
        if (files_.empty()) {
            GTEST_SKIP() << "the corpus is not there (" << corpus(GetParam().folder).string()
                         << ")";
        }
    }

    std::vector<fs::path> files_;
};
INSTANTIATE_TEST_SUITE_P(, PictureCorpus, testing::ValuesIn(kFormats),
                         [](const auto& each) { return std::string(each.param.folder); });

TEST_P(PictureCorpus, EveryFileDecodesAsTheReferenceSays) {
    int loaded = 0;
    for (const fs::path& path : files_) {
        const Bytes bytes = bytesOf(path);
        const test::ReferenceImage expected = GetParam().reference(bytes);
        ASSERT_FALSE(expected.unknown) << path.filename();
        EXPECT_TRUE(test::DecodedFile(GetParam().read, bytes).isLike(expected)) << path.filename();
        if (expected.success) ++loaded;
    }
    EXPECT_GT(loaded, 0);
    std::printf("%d of %zu files load\n", loaded, files_.size());
}

TEST_P(PictureCorpus, EveryFileLoadsOrIsNoPicture) {
    for (const fs::path& path : files_) {
        const test::ReferenceImage expected = GetParam().reference(bytesOf(path));
        Ref<PictureInfo> info;
        Picture picture;
        const auto failure =
            test::failureOf([&] { picture = LoadPictureEx(fromAnsi(path.string()), info); });
        ASSERT_EQ(failure.has_value(), !expected.success) << path.filename();
        if (failure) {
            EXPECT_EQ(failure->number, error::kInvalidPicture) << path.filename();
            continue;
        }
        EXPECT_EQ(info->PictureType(), GetParam().type);
        EXPECT_EQ(info->Width(), expected.width);
        EXPECT_EQ(info->Height(), expected.height);
        EXPECT_EQ(info->ImageBPP(), expected.bitsPerPixel);
        EXPECT_EQ(test::pixelsOf(picture), test::drawn(expected)) << path.filename();
    }
}

}  // namespace
}  // namespace orvane

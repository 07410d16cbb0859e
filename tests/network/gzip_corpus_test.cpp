#include "gzip_outcome.h"

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

fs::path corpus() {
    const char* chosen = std::getenv("ORVANE_CORPUS");
    const fs::path root = chosen != nullptr
                              ? fs::path(chosen)
                              : fs::path(ORVANE_SOURCE_DIR) / ".." / "shared" / "corpus";
    return root / "pictures" / "gzip";
}

std::string bytesOf(const fs::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

TEST(GZipCorpus, EveryFileGivesWhatTheReferenceGives) {
    std::vector<fs::path> files;
    std::error_code missing;
    for (const fs::directory_entry& entry : fs::directory_iterator(corpus(), missing))
        files.push_back(entry.path());
    if (files.empty()) GTEST_SKIP() << "the corpus is not there (" << corpus().string() << ")";
    std::ranges::sort(files);
    const auto archive = make<orvGZipArchive>();
    int succeeded = 0;
    for (const fs::path& path : files) {
        const std::string bytes = bytesOf(path);
        const test::GzipReference reference(bytes);
        const test::GzipOutcome outcome = test::outcomeOf(*archive, bytes);
        if (reference.tooLong()) {
            EXPECT_EQ(outcome.code, 2) << path.filename();
        } else {
            EXPECT_TRUE(outcome == reference.outcome()) << path.filename() << ": " << outcome;
        }
        if (outcome.code == 0) ++succeeded;
    }
    EXPECT_GT(succeeded, 0);
    std::printf("%d of %zu files are uncompressed\n", succeeded, files.size());
}

}  // namespace
}  // namespace orvane

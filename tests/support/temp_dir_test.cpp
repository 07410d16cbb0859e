#include "support/temp_dir.h"

#include <gmock/gmock.h>

namespace orvane::test {
namespace {

using testing::ElementsAre;

TEST(TempDir, GivesBackWhatWasWritten) {
    const TempDir dir;
    const std::vector<std::uint8_t> bytes{0, 26, 13, 10, 255};
    EXPECT_EQ(dir.write("b.bin", bytes), dir.file("b.bin"));
    dir.write("a.txt", "text");
    EXPECT_EQ(dir.read("b.bin"), bytes);
    EXPECT_THAT(dir.entries(), ElementsAre("a.txt", "b.bin"));
    EXPECT_TRUE(dir.has("a.txt"));
    EXPECT_FALSE(dir.has("c.txt"));
}

TEST(TempDir, IsNewEachTimeAndGoesWithAllItHolds) {
    std::filesystem::path first;
    {
        const TempDir dir;
        const TempDir other;
        first = dir.path();
        EXPECT_NE(dir.path(), other.path());
        EXPECT_TRUE(dir.entries().empty());
        std::filesystem::create_directory(dir.path() / "sub");
        dir.write("sub/file", "x");
    }
    EXPECT_FALSE(std::filesystem::exists(first));
}

}  // namespace
}  // namespace orvane::test

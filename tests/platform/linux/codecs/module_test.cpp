#include "platform/linux/codecs/bytes.h"
#include "platform/linux/codecs/codecs.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <string>
#include <type_traits>

#include <dlfcn.h>

namespace orvane::codecs::test {
namespace {

static_assert(std::is_trivial_v<OrvaneDecoded> && std::is_standard_layout_v<OrvaneDecoded>);
static_assert(sizeof(OrvaneDecoded) == 1136);

class Module : public testing::Test {
protected:
    void SetUp() override {
        module_ = dlopen(ORVANE_PICTURES_MODULE, RTLD_NOW | RTLD_LOCAL);
        ASSERT_NE(module_, nullptr) << dlerror();
        void* entry = dlsym(module_, ORVANE_CODEC_ENTRY);
        ASSERT_NE(entry, nullptr);
        table_ = reinterpret_cast<const OrvaneCodecTable* (*)()>(entry)();
    }

    void TearDown() override {
        if (module_ != nullptr) dlclose(module_);
    }

    void* module_ = nullptr;
    const OrvaneCodecTable* table_ = nullptr;
};

Bytes smallBmp() {
    Bytes file;
    file.text("BM").u32(0).u32(0).u32(26).u32(12).u16(1).u16(1).u16(1).u16(24);
    return file.u8({1, 2, 3, 0});
}

TEST_F(Module, GivesItsTable) {
    EXPECT_EQ(table_->version, ORVANE_CODEC_VERSION);
    EXPECT_EQ(table_->decodedSize, sizeof(OrvaneDecoded));
}

TEST_F(Module, DecodesAndReleases) {
    const Bytes file = smallBmp();
    OrvaneDecoded decoded;
    std::memset(&decoded, 0xee, sizeof decoded);
    ASSERT_EQ(table_->decode(file.data().data(), file.size(), &decoded), ORVANE_CODEC_OK);
    EXPECT_EQ(decoded.kind, ORVANE_PICTURE_BITMAP);
    EXPECT_EQ(decoded.pixels[2], 3);
    const OrvaneDecoded nothing{};
    table_->release(&decoded);
    EXPECT_EQ(std::memcmp(&decoded, &nothing, sizeof nothing), 0);
    table_->release(&decoded);
    EXPECT_EQ(std::memcmp(&decoded, &nothing, sizeof nothing), 0);
}

TEST_F(Module, OtherFilesAreNotRecognised) {
    OrvaneDecoded decoded;
    std::memset(&decoded, 0xee, sizeof decoded);
    const Bytes png = Bytes().u8({0x89, 'P', 'N', 'G', 13, 10, 26, 10}).zeroes(40);
    EXPECT_EQ(table_->decode(png.data().data(), png.size(), &decoded), ORVANE_CODEC_NOT_RECOGNISED);
    const OrvaneDecoded nothing{};
    EXPECT_EQ(std::memcmp(&decoded, &nothing, sizeof nothing), 0);
    EXPECT_EQ(table_->decode(nullptr, 0, &decoded), ORVANE_CODEC_NOT_RECOGNISED);
}

TEST_F(Module, ShowsNothingButItsEntry) {
    FILE* symbols = popen("nm -D --defined-only " ORVANE_PICTURES_MODULE, "r");
    ASSERT_NE(symbols, nullptr);
    std::string listed;
    for (int letter = fgetc(symbols); letter != EOF; letter = fgetc(symbols))
        listed += static_cast<char>(letter);
    EXPECT_EQ(pclose(symbols), 0);
    EXPECT_NE(listed.find(" T " ORVANE_CODEC_ENTRY "\n"), std::string::npos) << listed;
    EXPECT_EQ(std::count(listed.begin(), listed.end(), '\n'), 1) << listed;
}

}  // namespace
}  // namespace orvane::codecs::test

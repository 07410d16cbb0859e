#include "frame/values/codepage.h"
#include "pictures/LoadPictureEx.h"
#include "pictures/picture_pixels.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <map>
#include <string>

/// The pictures that come with the library load, and are what their names say.
namespace orvane {
namespace {

namespace fs = std::filesystem;
using Type = orvPictureTypeEx;

fs::path folder() {
    return fs::path(ORVANE_SOURCE_DIR) / "examples" / "pictures";
}

const std::map<std::string, Type> kTypes{
    {".bmp", Type::orvPteBMP}, {".gif", Type::orvPteGIF}, {".wmf", Type::orvPteWMF},
    {".emf", Type::orvPteEMF}, {".ico", Type::orvPteICO}, {".cur", Type::orvPteCUR},
    {".tga", Type::orvPteTGA}, {".pcx", Type::orvPtePCX}, {".psd", Type::orvPtePSD},
};

TEST(ExamplePictures, AllLoadAsWhatTheirNamesSay) {
    std::map<std::string, int> loaded;
    for (const fs::directory_entry& entry : fs::directory_iterator(folder())) {
        const std::string extension = entry.path().extension().string();
        ASSERT_TRUE(kTypes.contains(extension)) << entry.path();
        Ref<PictureInfo> info;
        const fs::path path = fs::path(entry.path()).make_preferred();
        const Picture picture = LoadPictureEx(fromAnsi(path.string()), info);
        EXPECT_FALSE(picture.isNothing());
        EXPECT_EQ(info->PictureType(), kTypes.at(extension)) << entry.path();
        ++loaded[extension];
    }
    EXPECT_EQ(loaded.size(), kTypes.size()) << "one of each format at least";
}

TEST(ExamplePictures, AllTargaFilesShowTheSamePicture) {
    Ref<PictureInfo> info;
    const auto load = [&](const char* name) {
        const fs::path path = (folder() / name).make_preferred();
        return test::pixelsOf(LoadPictureEx(fromAnsi(path.string()), info));
    };
    const auto expected = load("sunset-24-top-left.tga");
    EXPECT_EQ(load("sunset-24-bottom-left.tga"), expected);
    EXPECT_EQ(load("sunset-24-run-length.tga"), expected);
    EXPECT_EQ(load("sunset-32-top-left.tga"), expected);
    EXPECT_EQ(load("sunset-16-top-left.tga").size(), expected.size());
}

TEST(ExamplePictures, TheFilesOf24BitsShowTheSamePicture) {
    Ref<PictureInfo> info;
    const auto load = [&](const char* name) {
        const fs::path path = (folder() / name).make_preferred();
        return test::pixelsOf(LoadPictureEx(fromAnsi(path.string()), info));
    };
    const auto expected = load("sunset-24-top-left.tga");
    EXPECT_EQ(load("sunset-24.pcx"), expected);
    EXPECT_EQ(load("sunset.psd"), expected);
    EXPECT_EQ(load("sunset-raw-alpha.psd"), expected);
    EXPECT_EQ(load("sunset-8.pcx"), load("sunset-8.bmp"));
}

}  // namespace
}  // namespace orvane

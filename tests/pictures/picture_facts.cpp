// picture_facts FOLDER OUT: loads every file below FOLDER with LoadPictureEx and prints a line for
// each, with tabs between: its name, the error's number or 0, type, width, height and depth. The
// pixels of bitmaps, and those of metafiles drawn into a square, go to OUT, a file for each line
// under its number: red, green, blue, rows from the top. Transparent parts show the same colour on
// every system.

#include "frame/values/codepage.h"
#include "pictures/LoadPictureEx.h"
#include "pictures/drawn_picture.h"
#include "pictures/picture_pixels.h"
#include "platform/user32.h"
#include "support/recorder.h"

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

namespace {

namespace fs = std::filesystem;
using namespace orvane;

constexpr std::uint32_t kButtonFace = 0x50A0F0;

std::vector<fs::path> filesBelow(const fs::path& folder) {
    std::vector<fs::path> files;
    for (const fs::directory_entry& entry : fs::recursive_directory_iterator(folder)) {
        if (entry.is_regular_file()) files.push_back(entry.path());
    }
    std::ranges::sort(files, {}, [](const fs::path& path) { return path.generic_string(); });
    return files;
}

void writePixels(const Picture& picture, const fs::path& path) {
    const platform::BitmapFacts facts = test::factsOf(picture);
    const std::vector<std::uint8_t> pixels = test::pixelsOf(picture);
    const auto width = static_cast<std::size_t>(facts.width);
    const std::size_t stride = (width * 3 + 3) / 4 * 4;
    std::ofstream out(path, std::ios::binary);
    for (std::size_t y = 0; y < static_cast<std::size_t>(facts.height); ++y) {
        for (std::size_t x = 0; x < width; ++x) {
            const std::uint8_t* at = pixels.data() + y * stride + x * 3;
            out.put(static_cast<char>(at[2]));
            out.put(static_cast<char>(at[1]));
            out.put(static_cast<char>(at[0]));
        }
    }
}

void writeDrawing(const fs::path& metafile, const fs::path& path) {
    constexpr int kSide = 400;
    std::ifstream in(metafile, std::ios::binary);
    const std::string bytes{std::istreambuf_iterator<char>(in), {}};
    std::ofstream out(path, std::ios::binary);
    for (const std::uint32_t pixel : test::drawnPixels(bytes, kSide, kSide)) {
        out.put(static_cast<char>(pixel >> 16));
        out.put(static_cast<char>(pixel >> 8));
        out.put(static_cast<char>(pixel));
    }
}

void report(const fs::path& path, const std::string& name, const fs::path& pixels) {
    Ref<PictureInfo> info;
    Picture picture;
    std::int32_t number = 0;
    try {
        picture = LoadPictureEx(fromAnsi(fs::path(path).make_preferred().string()), info);
    } catch (const RuntimeError& failure) {
        number = failure.number;
    }
    const bool known = static_cast<bool>(info);
    std::printf("%s\t%d\t%d\t%d\t%d\t%d\n", name.c_str(), number,
                known ? static_cast<int>(info->PictureType()) : 0, known ? info->Width() : 0,
                known ? info->Height() : 0, known ? info->ImageBPP() : 0);
    if (number != 0) return;
    if (picture.type() == Picture::Type::bitmap) writePixels(picture, pixels);
    if (picture.type() == Picture::Type::metafile ||
        picture.type() == Picture::Type::enhancedMetafile) {
        writeDrawing(path, pixels);
    }
}

}  // namespace

int main(int count, char** arguments) {
    if (count != 3) return 2;
    test::ScopedTarget colour(platform::user32.GetSysColor,
                              [](std::int32_t) { return kButtonFace; });
    const fs::path folder(arguments[1]);
    int line = 0;
    for (const fs::path& path : filesBelow(folder)) {
        report(path, path.lexically_relative(folder).generic_string(),
               fs::path(arguments[2]) / std::to_string(line++));
    }
    return 0;
}

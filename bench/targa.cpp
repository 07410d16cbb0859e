// Targa files of 4096 x 4096 pixels, from the file to a picture, against stb_image and
// GraphicsMagick reading the same files.

#include "reader_bench.h"
#include "stb_peer.h"

#include <random>

namespace {

constexpr int kSize = 4096;

struct Variant {
    const char* name;
    int type;
    int depth;
    bool topDown;
};

// The variants that load: 32-bit rows from the bottom and padded-free run lengths from the top do
// not.
constexpr Variant kVariants[] = {
    {"type 2, 24 bits, from the bottom", 2, 24, false},
    {"type 2, 24 bits, from the top", 2, 24, true},
    {"type 2, 32 bits, from the top", 2, 32, true},
    {"type 10, 24 bits, from the bottom", 10, 24, false},
    {"type 10, 32 bits, from the bottom", 10, 32, false},
};

void appendRunLengthRow(std::string& out, std::mt19937& random, int bytes) {
    const auto pixel = [&] {
        for (int i = 0; i < bytes; ++i)
            out += static_cast<char>(random() & 0xFF);
    };
    for (int x = 0; x < kSize;) {
        const int count = std::min(kSize - x, static_cast<int>(random() % 60 + 1));
        const bool run = random() % 2 == 0;
        out += static_cast<char>((run ? 0x80 : 0) | (count - 1));
        for (int i = 0; i < (run ? 1 : count); ++i)
            pixel();
        x += count;
    }
}

std::string makeFile(const Variant& variant) {
    char header[18] = {};
    header[2] = static_cast<char>(variant.type);
    header[13] = kSize >> 8;
    header[15] = kSize >> 8;
    header[16] = static_cast<char>(variant.depth);
    header[17] = variant.topDown ? 0x20 : 0;
    std::string bytes(header, sizeof header);
    std::mt19937 random(7);
    for (int y = 0; y < kSize; ++y) {
        if (variant.type == 10) {
            appendRunLengthRow(bytes, random, variant.depth / 8);
        } else {
            for (int i = 0; i < kSize * variant.depth / 8; i += 4) {
                const auto four = random();
                bytes.append(reinterpret_cast<const char*>(&four), 4);
            }
        }
    }
    bytes.resize(bytes.size() + 4);
    return bytes;
}

}  // namespace

int main(int, char** arguments) {
    using namespace orvane::bench;
    InitializeMagick(nullptr);
    const auto library = orvane::make<orvane::orvMain>();
    const BenchFile file("picture.tga");
    for (const Variant& variant : kVariants) {
        file.write(makeFile(variant));
        const auto ours = [&] { loadPicture(*library, file.widePath()); };
        const auto stb = [&] {
            int width = 0;
            int height = 0;
            int channels = 0;
            stbi_image_free(stbi_load(file.path().c_str(), &width, &height, &channels, 0));
        };
        const auto magick = [&] { readWithGraphicsMagick("tga", file.path()); };
        const auto [own, stbTime, magickTime] = mediansInTurns(7, 1, ours, stb, magick);
        printRatio(variant.name, own, "stb_image", stbTime);
        printRatio("", own, "GraphicsMagick", magickTime);
        printPeak(builtFile(arguments[0], "orvane"), file.path(), 2L * kSize * kSize * 3,
                  "twice the decoded size");
    }
    DestroyMagick();
    return 0;
}

// PCX files of 4096 x 4096 pixels, from the file to a picture, against GraphicsMagick and FreeImage
// reading the same files. A picture of one plane has 24 bits here; FreeImage's has 8 by itself,
// which are a third of the memory, and 24 when it is told to convert them.

#include "reader_bench.h"

#include <random>

namespace {

constexpr int kSize = 4096;

struct Variant {
    const char* name;
    int planes;
};

constexpr Variant kVariants[] = {
    {"one plane, 8 bits", 1},
    {"three planes, 24 bits", 3},
};

/// One line of runs and of bytes that stand for themselves, up to 60 of them.
void appendLine(std::string& out, std::mt19937& random) {
    for (int x = 0; x < kSize;) {
        const int count = std::min(kSize - x, static_cast<int>(random() % 60 + 1));
        if (random() % 2 == 0) {
            out += static_cast<char>(0xC0 | count);
            out += static_cast<char>(random());
        } else {
            for (int i = 0; i < count; ++i)
                out += static_cast<char>(random() % 0xC0);
        }
        x += count;
    }
}

std::string makeFile(const Variant& variant) {
    char header[128] = {10, 5, 1, 8};
    header[8] = header[10] = static_cast<char>((kSize - 1) & 0xFF);
    header[9] = header[11] = (kSize - 1) >> 8;
    header[65] = static_cast<char>(variant.planes);
    header[67] = kSize >> 8;
    header[68] = 1;
    std::string bytes(header, sizeof header);
    std::mt19937 random(7);
    for (int line = 0; line < kSize * variant.planes; ++line)
        appendLine(bytes, random);
    if (variant.planes != 1) return bytes;
    bytes += '\x0C';
    for (int i = 0; i < 768; ++i)
        bytes += static_cast<char>(random());
    return bytes;
}

}  // namespace

int main(int, char** arguments) {
    using namespace orvane::bench;
    InitializeMagick(nullptr);
    FreeImage_Initialise(FALSE);
    const auto library = orvane::make<orvane::orvMain>();
    const BenchFile file("picture.pcx");
    for (const Variant& variant : kVariants) {
        file.write(makeFile(variant));
        const auto ours = [&] { loadPicture(*library, file.widePath()); };
        const auto freeImage = [&] { readWithFreeImage(FIF_PCX, file.path()); };
        const auto colours = [&] { readColoursWithFreeImage(FIF_PCX, file.path()); };
        const auto magick = [&] { readWithGraphicsMagick("pcx", file.path()); };
        const auto [own, freeImageTime, coloursTime, magickTime] =
            mediansInTurns(7, 1, ours, freeImage, colours, magick);
        const bool indexed = variant.planes == 1;
        printRatio(variant.name, own, indexed ? "FreeImage, 8 bits" : "FreeImage", freeImageTime);
        if (indexed) printRatio("", own, "made 24 bits", coloursTime);
        printRatio("", own, "GraphicsMagick", magickTime);
        printPeakOfDecoder(builtFile(arguments[0], "orvane"), file.path(), 3L * kSize * kSize);
    }
    FreeImage_DeInitialise();
    DestroyMagick();
    return 0;
}

// Photoshop documents of 4096 x 4096 pixels, from the file to a picture, against stb_image and
// FreeImage reading the same files. (GraphicsMagick may come without them.)

#include "reader_bench.h"
#include "stb_peer.h"

#include <random>

namespace {

constexpr int kSize = 4096;

struct Variant {
    const char* name;
    int channels;
    bool packed;
};

// Raw data of three channels doesn't load.
constexpr Variant kVariants[] = {
    {"PackBits, 3 channels", 3, true},
    {"PackBits, 4 channels", 4, true},
    {"raw, 4 channels", 4, false},
};

void appendNumber(std::string& out, unsigned value, int size) {
    for (int shift = (size - 1) * 8; shift >= 0; shift -= 8)
        out += static_cast<char>(value >> shift & 0xFF);
}

/// A row of packets of up to 60 pixels, runs and literals in turn as they come. Alpha, the last
/// channel, is opaque.
std::string packedRow(std::mt19937& random, bool opaque) {
    std::string row;
    for (int x = 0; x < kSize;) {
        const int count = std::min(kSize - x, static_cast<int>(random() % 60 + 2));
        if (opaque || (count > 1 && random() % 2 == 0)) {
            row += static_cast<char>(count > 1 ? 257 - count : 0);
            row += opaque ? '\xFF' : static_cast<char>(random());
        } else {
            row += static_cast<char>(count - 1);
            for (int i = 0; i < count; ++i)
                row += static_cast<char>(random());
        }
        x += count;
    }
    return row;
}

std::string makeFile(const Variant& variant) {
    std::string bytes = "8BPS";
    appendNumber(bytes, 1, 2);
    bytes.append(6, '\0');
    appendNumber(bytes, static_cast<unsigned>(variant.channels), 2);
    appendNumber(bytes, unsigned{kSize}, 4);
    appendNumber(bytes, unsigned{kSize}, 4);
    appendNumber(bytes, 8, 2);
    appendNumber(bytes, 3, 2);
    bytes.append(12, '\0');
    appendNumber(bytes, variant.packed ? 1 : 0, 2);
    std::string lengths;
    std::string data;
    std::mt19937 random(7);
    for (int channel = 0; channel < variant.channels; ++channel) {
        for (int y = 0; y < kSize; ++y) {
            const bool opaque = channel == 3;
            std::string row;
            if (variant.packed) {
                row = packedRow(random, opaque);
                appendNumber(lengths, static_cast<unsigned>(row.size()), 2);
            } else if (opaque) {
                row.assign(kSize, '\xFF');
            } else {
                for (int x = 0; x < kSize; ++x)
                    row += static_cast<char>(random());
            }
            data += row;
        }
    }
    return bytes + lengths + data;
}

}  // namespace

int main(int, char** arguments) {
    using namespace orvane::bench;
    FreeImage_Initialise(FALSE);
    const auto library = orvane::make<orvane::orvMain>();
    const BenchFile file("picture.psd");
    for (const Variant& variant : kVariants) {
        file.write(makeFile(variant));
        const auto ours = [&] { loadPicture(*library, file.widePath()); };
        const auto stb = [&] {
            int width = 0;
            int height = 0;
            int channels = 0;
            stbi_image_free(stbi_load(file.path().c_str(), &width, &height, &channels, 0));
        };
        const auto freeImage = [&] { readWithFreeImage(FIF_PSD, file.path()); };
        const auto [own, stbTime, freeImageTime] = mediansInTurns(7, 1, ours, stb, freeImage);
        printRatio(variant.name, own, "stb_image", stbTime);
        printRatio("", own, "FreeImage", freeImageTime);
        printPeakOfDecoder(builtFile(arguments[0], "orvane"), file.path(), 3L * kSize * kSize);
    }
    FreeImage_DeInitialise();
    return 0;
}

// Targa files of 4096 x 4096 pixels, from the file to a picture, against stb_image and
// GraphicsMagick reading the same files.

#include "bench.h"

#include "main/orvMain.h"

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <cstring>
#include <fstream>
#include <random>

#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wpragmas"
#pragma GCC diagnostic ignored "-Wold-style-cast"
#pragma GCC diagnostic ignored "-Wconversion"
#pragma GCC diagnostic ignored "-Wsign-conversion"
#pragma GCC diagnostic ignored "-Wcast-qual"
#pragma GCC diagnostic ignored "-Wuseless-cast"
#pragma GCC diagnostic ignored "-Wmissing-declarations"
#pragma GCC diagnostic ignored "-Wunused-function"
#pragma GCC diagnostic ignored "-Wduplicated-branches"
#define STB_IMAGE_IMPLEMENTATION
#define STBI_ONLY_TGA
#include <stb/stb_image.h>

#include <magick/api.h>
#pragma GCC diagnostic pop

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

/// The peak memory of a process that does nothing but load the file: the command-line host.
long peakKilobytes(const std::string& host, const std::string& path) {
    const pid_t child = fork();
    if (child == 0) {
        dup2(open("/dev/null", O_WRONLY), STDOUT_FILENO);
        execl(host.c_str(), host.c_str(), "picture", "info", path.c_str(), nullptr);
        _exit(127);
    }
    rusage usage{};
    int status = 0;
    if (wait4(child, &status, 0, &usage) != child || WEXITSTATUS(status) == 127) std::exit(1);
    return usage.ru_maxrss;
}

void printPeak(const std::string& host, const std::string& path) {
    constexpr long kDecoded = kSize * kSize * 3L / 1024;
    const long peak = peakKilobytes(host, path);
    std::printf(
        "    peak memory of a host that loads it: %ld MiB, %.2f of twice the decoded size\n",
        peak / 1024, static_cast<double>(peak) / (2.0 * kDecoded));
}

void readWithGraphicsMagick(const std::string& path) {
    ExceptionInfo exception;
    GetExceptionInfo(&exception);
    ImageInfo* info = CloneImageInfo(nullptr);
    std::snprintf(info->filename, sizeof info->filename, "tga:%s", path.c_str());
    Image* image = ReadImage(info, &exception);
    if (image == nullptr) std::exit(1);
    DestroyImage(image);
    DestroyImageInfo(info);
    DestroyExceptionInfo(&exception);
}

}  // namespace

int main(int, char** arguments) {
    const std::string host = orvane::bench::builtFile(arguments[0], "orvane");
    InitializeMagick(nullptr);
    const auto library = orvane::make<orvane::orvMain>();
    char folder[] = "/tmp/orvane-bench-XXXXXX";
    if (mkdtemp(folder) == nullptr) return 1;
    const std::string path = std::string(folder) + "/picture.tga";
    const std::u16string wide(path.begin(), path.end());
    for (const Variant& variant : kVariants) {
        const std::string bytes = makeFile(variant);
        std::ofstream(path, std::ios::binary) << bytes;
        const auto ours = [&] {
            orvane::Ref<orvane::PictureInfo> info;
            if (library->LoadPictureEx(wide, info).isNothing()) std::exit(1);
        };
        const auto stb = [&] {
            int width = 0;
            int height = 0;
            int channels = 0;
            stbi_image_free(stbi_load(path.c_str(), &width, &height, &channels, 0));
        };
        const auto [own, peer] = orvane::bench::bestTimes(ours, stb, 7);
        orvane::bench::printRatio(variant.name, own, "stb_image", peer);
        const auto magick = orvane::bench::bestTime([&] { readWithGraphicsMagick(path); }, 2);
        orvane::bench::printRatio("", own, "GraphicsMagick", magick);
        printPeak(host, path);
    }
    unlink(path.c_str());
    rmdir(folder);
    DestroyMagick();
    return 0;
}

// A Windows metafile of 1000 polygons, 500 ellipses and 500 lines, drawn 1000 x 1000 pixels
// large, against GraphicsMagick (libwmf) drawing the same file. GraphicsMagick smooths edges, which
// costs it time that Windows' hard ones don't take.

#include "reader_bench.h"

#include "platform/linux/metafiles/play.h"

#include <random>
#include <stdexcept>
#include <vector>

namespace {

constexpr int kSide = 1000;

class Writer {
public:
    void u16(int value) {
        bytes_ += static_cast<char>(value & 0xFF);
        bytes_ += static_cast<char>(value >> 8 & 0xFF);
    }
    void u32(unsigned value) {
        u16(static_cast<int>(value & 0xFFFF));
        u16(static_cast<int>(value >> 16));
    }
    void record(int function, std::initializer_list<int> words) {
        u32(static_cast<unsigned>(3 + words.size()));
        u16(function);
        for (const int word : words)
            u16(word);
    }
    std::string& bytes() { return bytes_; }

private:
    std::string bytes_;
};

std::string makeRecords() {
    Writer out;
    std::mt19937 random(11);
    const auto place = [&] { return static_cast<int>(random() % kSide); };
    const auto near = [&](int from) { return from + static_cast<int>(random() % 100); };
    out.record(0x020B, {0, 0});
    out.record(0x020C, {kSide, kSide});
    for (int i = 0; i < 500; ++i) {
        out.record(0x02FC,
                   {0, static_cast<int>(random() & 0xFFFF), static_cast<int>(random() & 0xFF), 0});
        out.record(0x012D, {0});
        for (int polygon = 0; polygon < 2; ++polygon) {
            const int x = place();
            const int y = place();
            out.record(0x0324, {4, x, y, near(x), y, near(x), near(y), x, near(y)});
        }
        const int x = place();
        const int y = place();
        out.record(0x0418, {near(y), near(x), y, x});
        out.record(0x0214, {place(), place()});
        out.record(0x0213, {place(), place()});
        out.record(0x01F0, {0});
    }
    out.record(0, {});
    return out.bytes();
}

std::string makeFile() {
    const std::string records = makeRecords();
    Writer out;
    out.u32(0x9AC6CDD7);
    for (const int word : {0, 0, 0, kSide, kSide, 72, 0, 0})
        out.u16(word);
    int sum = 0;
    for (std::size_t i = 0; i < 20; i += 2)
        sum ^= static_cast<unsigned char>(out.bytes()[i]) |
               static_cast<unsigned char>(out.bytes()[i + 1]) << 8;
    out.u16(sum);
    out.u16(1);
    out.u16(9);
    out.u16(0x300);
    out.u32(static_cast<unsigned>(9 + records.size() / 2));
    out.u16(1);
    out.u32(64);
    out.u16(0);
    return out.bytes() + records;
}

void play(const std::string& file) {
    std::vector<std::uint8_t> pixels(std::size_t{kSide} * kSide * 4, 0xFF);
    const OrvaneCanvas canvas{kSide, kSide, pixels.data(), kSide * 4};
    const std::span bytes(reinterpret_cast<const std::uint8_t*>(file.data()), file.size());
    if (orvane::metafiles::play(bytes, canvas, {0, 0, kSide, kSide}) != ORVANE_CODEC_OK)
        throw std::runtime_error("the metafile can't be played");
}

}  // namespace

int main() {
    using namespace orvane::bench;
    InitializeMagick(nullptr);
    const BenchFile file("picture.wmf");
    const std::string bytes = makeFile();
    file.write(bytes);
    const auto [ours, magick] =
        medianTimes([&] { play(bytes); }, [&] { readWithGraphicsMagick("wmf", file.path()); }, 3);
    printRatio("2000 figures, 1000 x 1000", ours, "GraphicsMagick", magick);
    DestroyMagick();
    return 0;
}

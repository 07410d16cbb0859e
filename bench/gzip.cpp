// The CRC-32 against zlib's, and gzip members of up to 64 MiB of text and of noise against zlib's
// `uncompress` and `crc32` over the same bytes, with what the text of bytes costs included.

#include "bench.h"

#include "frame/values/codepage.h"
#include "network/cCRC32.h"
#include "network/crc32_steps.h"
#include "network/orvGZipArchive.h"

#include <zlib.h>

#include <cstdlib>
#include <random>
#include <string>
#include <vector>

namespace {

using orvane::bench::medianTimes;
using orvane::bench::printRatio;

/// Words as a text has them: short ones often, in lines.
std::string wordText(std::size_t size) {
    std::mt19937 random(64);
    std::vector<std::string> words;
    for (int i = 0; i < 5000; ++i) {
        std::string word;
        for (std::size_t letters = 1 + random() % 9; letters > 0; --letters)
            word += static_cast<char>('a' + random() % 26);
        words.push_back(word);
    }
    std::string text;
    text.reserve(size + 20);
    while (text.size() < size) {
        const std::size_t rank = random() % 71 * (random() % 71);
        text += words[rank];
        text += random() % 12 == 0 ? '\n' : ' ';
    }
    text.resize(size);
    return text;
}

/// The header and the deflate stream of zlib's own format.
std::string compressed(const std::string& text) {
    uLongf size = compressBound(static_cast<uLong>(text.size()));
    std::string out(size, '\0');
    if (compress2(reinterpret_cast<Bytef*>(out.data()), &size,
                  reinterpret_cast<const Bytef*>(text.data()), static_cast<uLong>(text.size()),
                  6) != Z_OK) {
        std::exit(1);
    }
    out.resize(size);
    return out;
}

std::string noise(std::size_t size) {
    std::mt19937 random(65);
    std::string bytes(size, '\0');
    for (char& byte : bytes)
        byte = static_cast<char>(random() & 0xFF);
    return bytes;
}

std::string littleEndian(std::uint32_t number) {
    std::string bytes;
    for (int i = 0; i < 4; ++i)
        bytes += static_cast<char>(number >> (8 * i) & 0xFF);
    return bytes;
}

std::uint32_t zlibCrc(const std::string& text) {
    return static_cast<std::uint32_t>(
        ::crc32(0, reinterpret_cast<const Bytef*>(text.data()), static_cast<uInt>(text.size())));
}

void measureCrc(const std::string& text, const char* what, int repetitions) {
    using namespace orvane;
    volatile std::uint32_t sink = 0;
    auto bytes =
        Array<std::uint8_t>::withBounds({Bound{0, static_cast<std::uint32_t>(text.size())}});
    std::ranges::copy(text, bytes.elements().begin());
    const auto ours = [&] { sink = static_cast<std::uint32_t>(cCRC32().GetByteArrayCrc32(bytes)); };
    const auto slices = [&] { sink = crc::bySlices(0, bytes.elements()); };
    const auto theirs = [&] { sink = zlibCrc(text); };
    const auto [own, peer] = medianTimes(ours, theirs, 9, repetitions);
    printRatio(what, own, "zlib crc32", peer);
    const auto [plain, again] = medianTimes(slices, theirs, 5, repetitions);
    printRatio("    without carry-less multiplication", plain, "zlib crc32", again);
}

void measureMember(const std::string& text, const char* what) {
    using namespace orvane;
    const std::string stream = compressed(text);
    constexpr std::size_t kHeader = 2;
    constexpr std::size_t kCheck = 4;
    const std::string member = "\x1F\x8B\x08" + std::string(7, '\0') +
                               stream.substr(kHeader, stream.size() - kHeader - kCheck) +
                               littleEndian(zlibCrc(text)) +
                               littleEndian(static_cast<std::uint32_t>(text.size()));
    const WString data = fromAnsi(member);
    const uLong crc = zlibCrc(text);
    const auto archive = make<orvGZipArchive>();
    const auto ours = [&] {
        if (archive->UncompressData(data) != gzUncompressErrors::gzueSuccess) std::exit(1);
    };
    const auto theirs = [&] {
        std::vector<Bytef> out(text.size());
        uLongf size = out.size();
        const auto* in = reinterpret_cast<const Bytef*>(stream.data());
        if (uncompress(out.data(), &size, in, static_cast<uLong>(stream.size())) != Z_OK) {
            std::exit(1);
        }
        if (::crc32(0, out.data(), static_cast<uInt>(size)) != crc) std::exit(1);
    };
    const auto [own, peer] = medianTimes(ours, theirs, 7);
    printRatio(what, own, "uncompress + crc32", peer);
    if (archive->UncompressedData().size() != text.size()) std::exit(1);
}

}  // namespace

int main() {
    const std::string text = wordText(64u << 20);
    measureCrc(text.substr(0, 1u << 20), "CRC-32 of 1 MiB", 20);
    measureCrc(text, "CRC-32 of 64 MiB", 1);
    measureMember(text, "gzip member of 64 MiB of text");
    measureMember(noise(64u << 20), "gzip member of 64 MiB of noise");
    measureMember(text.substr(0, 1u << 20), "gzip member of 1 MiB of text");
    measureMember(text.substr(0, 16u << 20), "gzip member of 16 MiB of text");
    return 0;
}

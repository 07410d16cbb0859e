#include "pictures/PsdPlanes.h"

#include "frame/errors.h"
#include "pictures/interleave.h"

#include <algorithm>
#include <cstring>

namespace orvane::psd {
namespace {

/// The places of blue, green, red and alpha in a pixel, in the order of the channels.
constexpr std::array<int, 4> kPlaces{2, 1, 0, 3};
constexpr int kAlpha = 3;

/// Whether the file has a plane for a place of the pixel; others get defaults. The two forms differ
/// by one: of raw data there is a plane more, so that three channels need a fourth plane behind
/// them, and of two channels of packed data there is none for red.
bool isStored(const Header& header, int place) {
    return header.packed ? place < header.channels : place <= header.channels;
}

/// A packet by its first byte: below 128 as many pixels as follow, above one pixel repeated. 128
/// is skipped.
struct Packet {
    std::uint8_t bytes;
    std::uint8_t pixels;
};
constexpr int kNothing = 128;
constexpr int kMostPixels = 128;

constexpr std::array<Packet, 256> packets() {
    std::array<Packet, 256> table{};
    for (int first = 0; first < 256; ++first) {
        auto& [bytes, pixels] = table[static_cast<std::size_t>(first)];
        bytes = static_cast<std::uint8_t>(first < kNothing ? first + 2 : first > kNothing ? 2 : 1);
        pixels = static_cast<std::uint8_t>(first < kNothing   ? first + 1
                                           : first > kNothing ? 257 - first
                                                              : 0);
    }
    return table;
}
constexpr std::array<Packet, 256> kPackets = packets();

/// The bytes that planes of packed data have at the least: runs of the greatest length.
std::int64_t leastPacked(std::int64_t pixels) {
    return (pixels + kMostPixels - 1) / kMostPixels * 2;
}

/// The table of row lengths in front of packed planes. It isn't used.
std::int64_t tableSize(const Header& header) {
    return std::int64_t{header.channels} * header.height * 2;
}

/// Where the packed plane that begins at `at` ends.
std::size_t endOfPlane(const Header& header, int place, const std::uint8_t* data, std::size_t size,
                       std::size_t at) {
    std::int64_t left = header.pixels();
    while (left > 0) {
        if (at >= size) raise(error::kSubscriptOutOfRange);
        const Packet packet = kPackets[data[at]];
        at += packet.bytes;
        left -= packet.pixels;
    }
    // Pixels lie together with two bytes more behind the last one: a colour has room for one pixel
    // too many there, alpha for none.
    const int tooMany = place == kAlpha ? 0 : 1;
    if (at > size || -left > tooMany) raise(error::kSubscriptOutOfRange);
    return at;
}

/// Packets are short: they are copied and filled in blocks, the last of which goes too far.
constexpr std::size_t kBlock = 64;
static_assert(kBlock <= Planes::kSlack);

void copyBlocks(std::uint8_t* target, const std::uint8_t* source, std::size_t count) {
    for (std::size_t i = 0; i < count; i += kBlock)
        std::memcpy(target + i, source + i, kBlock);
}
void fillBlocks(std::uint8_t* target, std::uint8_t value, std::size_t count) {
    for (std::size_t i = 0; i < count; i += kBlock)
        std::memset(target + i, value, kBlock);
}

}  // namespace

std::int64_t leastData(const Header& header) {
    const std::int64_t plane = header.packed ? leastPacked(header.pixels()) : header.pixels();
    const auto stored =
        std::ranges::count_if(kPlaces, [&header](int place) { return isStored(header, place); });
    return stored * plane + (header.packed ? tableSize(header) : 0);
}

std::int64_t rawColors(const Header& header) {
    const auto stored = std::ranges::count_if(
        kPlaces, [&header](int place) { return place != kAlpha && isStored(header, place); });
    return stored * header.pixels();
}

PlaneRows::PlaneRows(std::int32_t width)
    : width_(static_cast<std::size_t>(width)), buffer_(std::make_unique<std::uint8_t[]>(width_)) {}

PlaneRows::PlaneRows(const Header& header, const std::uint8_t* data)
    : width_(static_cast<std::size_t>(header.width)), data_(data) {
    if (!header.packed) return;
    constexpr std::size_t kChunk = 4096;
    wanted_ = std::max(width_, kChunk);
    packedPixels_ = header.pixels();
    buffer_ = std::make_unique_for_overwrite<std::uint8_t[]>(wanted_ + kMostPixels + kBlock);
}

const std::uint8_t* PlaneRows::next() {
    if (data_ == nullptr) return buffer_.get();
    if (buffer_ == nullptr) {
        const std::uint8_t* const row = data_;
        data_ += width_;
        return row;
    }
    if (last_ - first_ < width_) unpack();
    const std::uint8_t* const row = buffer_.get() + first_;
    first_ += width_;
    return row;
}

/// Unpacks as many packets as there is room for, a row at least. A packet may cross row ends.
void PlaneRows::unpack() {
    last_ -= first_;
    std::memmove(buffer_.get(), buffer_.get() + first_, last_);
    first_ = 0;
    while (last_ < wanted_ && packedPixels_ > 0) {
        const std::uint8_t first = *data_;
        const Packet packet = kPackets[first];
        std::uint8_t* const target = buffer_.get() + last_;
        if (first < kNothing) {
            copyBlocks(target, data_ + 1, packet.pixels);
        } else {
            fillBlocks(target, data_[1], packet.pixels);
        }
        data_ += packet.bytes;
        last_ += packet.pixels;
        packedPixels_ -= packet.pixels;
    }
}

Planes::Planes(const Header& header, const std::uint8_t* data, std::size_t size)
    : width_(static_cast<std::size_t>(header.width)) {
    std::size_t at = header.packed ? static_cast<std::size_t>(tableSize(header)) : 0;
    for (const int place : kPlaces) {
        const std::size_t start = at;
        const bool stored = isStored(header, place);
        if (stored && header.packed) at = endOfPlane(header, place, data, size, at);
        if (stored && !header.packed) at += static_cast<std::size_t>(header.pixels());
        if (place == kAlpha) continue;
        colors_[static_cast<std::size_t>(place)] =
            stored ? std::make_unique<PlaneRows>(header, data + start)
                   : std::make_unique<PlaneRows>(header.width);
    }
}

void Planes::nextRow(std::uint8_t* target) {
    interleave(colors_[0]->next(), colors_[1]->next(), colors_[2]->next(), target, width_);
}

}  // namespace orvane::psd

#include "pictures/PcxLines.h"

#include "pictures/interleave.h"

#include <algorithm>
#include <bit>
#include <cstring>
#include <memory>

namespace orvane::pcx {
namespace {

/// The length of a run lies in the six bits below the two that both are set where one begins.
constexpr std::size_t kLongestRun = 63;

/// What `Runs` may write behind the bytes that it gives.
constexpr std::size_t kSlack = 64;

/// How many of eight bytes, from the first on, begin no run: the two highest bits of such a byte
/// are not both set.
std::size_t literalsIn(std::uint64_t eight) {
    static_assert(std::endian::native == std::endian::little, "the first byte is the lowest");
    const std::uint64_t runs = eight & (eight << 1) & 0x8080808080808080;
    return static_cast<std::size_t>(std::countr_zero(runs)) / 8;
}

/// The run-length code, item by item.
class Runs {
public:
    explicit Runs(const Body& body)
        : next_(body.bytes.elements().data()), end_(next_ + body.size) {}

    bool atEnd() const { return next_ == end_; }

    /// The literals up to the next run, `most` at most; how many there were, 0 where a run begins.
    /// May write seven bytes more.
    std::size_t literals(std::uint8_t* target, std::size_t most) {
        static_assert(Body::kSlack >= 8);
        most = std::min(most, static_cast<std::size_t>(end_ - next_));
        std::size_t count = 0;
        std::size_t part = 8;
        for (; part == 8 && count < most; count += part) {
            std::uint64_t eight = 0;
            std::memcpy(&eight, next_ + count, 8);
            std::memcpy(target + count, &eight, 8);
            part = literalsIn(eight);
        }
        count = std::min(count, most);
        next_ += count;
        return count;
    }

    struct Run {
        std::size_t length = 0;
        std::uint8_t value = 0;
    };
    /// The run that begins here. Its value is there: the last byte of a body is 0 and begins none.
    Run run() {
        const Run found{*next_ & kLongestRun, next_[1]};
        next_ += 2;
        return found;
    }

private:
    const std::uint8_t* next_;
    const std::uint8_t* end_;
};

/// A run of up to 63 bytes. Always writes 64.
void store(const Runs::Run& run, std::uint8_t* target) {
    std::memset(target, run.value, kSlack);
}

/// The line of one row from the start of `line`, which has room for a row of pixels and the slack;
/// the number of its bytes, or -1 when the body ends before them.
std::int32_t readIndexLine(Runs& runs, const Layout& layout, std::uint8_t* line) {
    std::int32_t x = 0;
    while (x < layout.totalBytes) {
        if (runs.atEnd()) return -1;
        const auto room = static_cast<std::size_t>(layout.totalBytes - x);
        if (const std::size_t count = runs.literals(line + x, room); count != 0) {
            x += static_cast<std::int32_t>(count);
            continue;
        }
        const Runs::Run run = runs.run();
        if (run.length <= room) {
            store(run, line + x);
            x += static_cast<std::int32_t>(run.length);
            continue;
        }
        // A run that leaves the line is cut to the width, not to the line. So it may even be longer
        // than it was, and in the padding of a line wider than the picture it leads back.
        if (x < layout.width) {
            std::memset(line + x, run.value, static_cast<std::size_t>(layout.width - x));
        }
        x = layout.width;
    }
    return x;
}

/// The least number of bytes that decode to a line: runs, and a literal for a single byte more.
std::int64_t leastBytes(std::int64_t line) {
    constexpr auto kRun = static_cast<std::int64_t>(kLongestRun);
    return line / kRun * 2 + std::min<std::int64_t>(line % kRun, 2);
}

/// The lines of all planes as the one stream that they are.
class LineStream {
public:
    explicit LineStream(const Body& body) : runs_(body) {}

    /// Decodes on behind `have` bytes of `target`, until there are `wanted` or the body ends; how
    /// many there are then. `target` has room for `wanted` and the slack.
    std::size_t fill(std::uint8_t* target, std::size_t have, std::size_t wanted) {
        const std::size_t before = have;
        while (have < wanted && !runs_.atEnd()) {
            std::size_t count = runs_.literals(target + have, wanted - have);
            if (count == 0) {
                const Runs::Run run = runs_.run();
                store(run, target + have);
                count = run.length;
            }
            have += count;
        }
        decoded_ += static_cast<std::int64_t>(have - before);
        return have;
    }

    /// Whether the whole body decodes to no more than `most` bytes.
    bool endsWithin(std::int64_t most) {
        std::array<std::uint8_t, kLongestRun + kSlack> unused;
        while (!runs_.atEnd() && decoded_ <= most)
            fill(unused.data(), 0, 1);
        return decoded_ <= most;
    }

private:
    Runs runs_;
    std::int64_t decoded_ = 0;
};

}  // namespace

bool canHoldIndices(const Layout& layout, std::int64_t bodySize) {
    // What a line has beyond a row of pixels goes into the next row; in the last row it has nowhere
    // to go.
    if (layout.totalBytes > layout.stride) return false;
    return leastBytes(layout.totalBytes) * layout.height <= bodySize;
}

bool canHoldPlanes(const Layout& layout) {
    // The planes of a row are taken to be three whatever their number, so of two planes the last
    // rows are looked for behind the end. The blue byte of the last pixel is the farthest one.
    const std::int64_t last =
        std::int64_t{layout.bytesPerLine} * (std::int64_t{layout.height} * 3 - 1) + layout.width -
        1;
    return last <= std::int64_t{layout.height} * layout.totalBytes;
}

bool readIndices(const Body& body, const Layout& layout, std::uint8_t* pixels) {
    // Lines are decoded beside the picture, because the slack may not be written into it.
    const auto line = std::make_unique_for_overwrite<std::uint8_t[]>(
        static_cast<std::size_t>(layout.stride) + kSlack);
    Runs runs(body);
    for (std::int32_t y = 0; y < layout.height; ++y) {
        const std::int32_t count = readIndexLine(runs, layout, line.get());
        if (count < 0) return false;
        std::memcpy(pixels, line.get(), static_cast<std::size_t>(count));
        pixels += layout.stride;
    }
    return true;
}

bool readPlanes(const Body& body, const Layout& layout, std::uint8_t* pixels) {
    const auto width = static_cast<std::size_t>(layout.width);
    const auto line = static_cast<std::size_t>(layout.bytesPerLine);
    // The bytes from the first red one of a row to its last blue one, and at least up to the next
    // row: three lines on, also where the file has more of them.
    const std::size_t step = 3 * line;
    const std::size_t span = std::max(step, 2 * line + width);
    const auto lines = std::make_unique<std::uint8_t[]>(span + kSlack);
    LineStream stream(body);
    std::size_t have = 0;
    for (std::int32_t y = 0; y < layout.height; ++y) {
        have = stream.fill(lines.get(), have, span);
        if (have == 0) break;  // the rest is black, and is already
        if (have < span) std::memset(lines.get() + have, 0, span - have);
        const std::uint8_t* const red = lines.get();
        interleave(red + 2 * line, red + line, red, pixels, width);
        pixels += layout.stride;
        have -= std::min(have, step);
        std::memmove(lines.get(), lines.get() + step, have);
    }
    // One byte more than the lines have is the zero that a body ends with.
    return stream.endsWithin(std::int64_t{layout.height} * layout.totalBytes + 1);
}

}  // namespace orvane::pcx

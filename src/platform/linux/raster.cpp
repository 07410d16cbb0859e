#include "platform/linux/raster.h"

#include "platform/linux/row_copy.h"

#include <algorithm>
#include <cstring>
#include <vector>

namespace orvane::platform {

namespace {

/// The operation's number of 8 bits: its result for each of the eight combinations of a pattern,
/// a source and a target bit, that of all ones in the highest.
std::uint32_t tableOf(std::uint32_t rasterOperation) {
    return (rasterOperation >> 16) & 0xFF;
}

constexpr std::uint32_t kCopyTable = (kSrcCopy >> 16) & 0xFF;

/// Four results, for source and target bit, applied to all bits at once.
std::uint32_t combined(std::uint32_t table, std::uint32_t source, std::uint32_t target) {
    std::uint32_t result = 0;
    result |= (table & 1) != 0 ? ~source & ~target : 0;
    result |= (table & 2) != 0 ? ~source & target : 0;
    result |= (table & 4) != 0 ? source & ~target : 0;
    result |= (table & 8) != 0 ? source & target : 0;
    return result;
}

/// One axis of a copy, clipped: target positions from `first` on, and for each the position in the
/// source. Positions rise or fall evenly, so the part that lies inside both is one stretch.
struct Axis {
    std::int64_t first = 0;
    std::vector<std::int32_t> sources;
};

Axis matched(std::int64_t to, std::int64_t toSize, std::int64_t toLimit, std::int64_t from,
             std::int64_t fromSize, std::int64_t fromLimit) {
    Axis axis;
    const bool mirrored = (toSize < 0) != (fromSize < 0);
    to += std::min<std::int64_t>(toSize, 0);
    from += std::min<std::int64_t>(fromSize, 0);
    toSize = std::abs(toSize);
    fromSize = std::abs(fromSize);
    const std::int64_t end = std::min(to + toSize, toLimit);
    for (std::int64_t at = std::max<std::int64_t>(to, 0); at < end; ++at) {
        // The source pixel under the middle of the target pixel. Sizes have 32 bits, and the
        // product of two has room in 64.
        const std::int64_t step = (at - to) * fromSize + fromSize / 2;
        const std::int64_t offset = fromSize == toSize ? at - to : step / toSize;
        const std::int64_t source = from + (mirrored ? fromSize - 1 - offset : offset);
        if (fromSize == 0 || source < 0 || source >= fromLimit) {
            continue;
        }
        if (axis.sources.empty()) {
            axis.first = at;
        }
        axis.sources.push_back(static_cast<std::int32_t>(source));
    }
    return axis;
}

bool isStraight(const std::vector<std::int32_t>& sources) {
    // Positions rise or fall evenly; the ends tell.
    return sources.size() == 1 ||
           (sources.back() - sources.front() + 1 == static_cast<std::int64_t>(sources.size()) &&
            sources[1] == sources[0] + 1);
}

/// The raw number that a surface stores for a colour.
std::uint32_t rawOf(const Surface& surface, std::uint32_t color) {
    fromColors(surface.format(), {&color, 1});
    return color;
}

/// Reads rows of a source as raw pixels of the target's format.
class SourceRows {
public:
    SourceRows(const Surface& target, const PixelView& source,
               const std::vector<std::int32_t>& columns, const OperationColors& colors)
        : target_(target), source_(source), columns_(columns), colors_(colors),
          black_(rawOf(target, colors.text)), white_(rawOf(target, colors.background)),
          first_(*std::min_element(columns.begin(), columns.end())),
          span_(
              static_cast<std::size_t>(*std::max_element(columns.begin(), columns.end()) - first_) +
              1),
          gathered_(columns.size()) {}

    std::span<const std::uint32_t> row(std::int32_t y) {
        if (y == current_) {
            return gathered_;
        }
        current_ = y;
        readRaw(source_.row(y), source_.format->bits, static_cast<std::uint32_t>(first_), span_);
        if (source_.isMonochrome && target_.format().bits > 1) {
            for (std::uint32_t& pixel : span_) {
                pixel = pixel != 0 ? white_ : black_;
            }
        } else if (target_.isMonochrome && source_.format->bits > 1) {
            toColors(*source_.format, span_);
            for (std::uint32_t& pixel : span_) {
                pixel = pixel == colors_.sourceBackground ? 1 : 0;
            }
        } else if (!(*source_.format == target_.format())) {
            toColors(*source_.format, span_);
            fromColors(target_.format(), span_);
        }
        for (std::size_t i = 0; i < columns_.size(); ++i) {
            gathered_[i] = span_[static_cast<std::size_t>(columns_[i] - first_)];
        }
        return gathered_;
    }

private:
    const Surface& target_;
    const PixelView& source_;
    const std::vector<std::int32_t>& columns_;
    const OperationColors& colors_;
    std::uint32_t black_;
    std::uint32_t white_;
    std::int32_t first_;
    std::vector<std::uint32_t> span_;
    std::vector<std::uint32_t> gathered_;
    std::int32_t current_ = -1;
};

/// Writes rows of raw pixels to a target through a raster operation.
class TargetRows {
public:
    TargetRows(Surface& target, std::int64_t first, std::size_t count, std::uint32_t operation,
               std::uint32_t pattern)
        : target_(target), first_(static_cast<std::uint32_t>(first)), table_(tableOf(operation)),
          pattern_(rawOf(target, pattern)), pixels_(count) {}

    void write(std::int32_t y, std::span<const std::uint32_t> source) {
        const std::uint32_t bits = target_.format().bits;
        readRaw(target_.row(y), bits, first_, pixels_);
        for (std::size_t i = 0; i < pixels_.size(); ++i) {
            pixels_[i] = (pattern_ & combined(table_ >> 4, source[i], pixels_[i])) |
                         (~pattern_ & combined(table_ & 0xF, source[i], pixels_[i]));
        }
        writeRaw(target_.ownRow(y), bits, first_, pixels_);
    }

private:
    Surface& target_;
    std::uint32_t first_;
    std::uint32_t table_;
    std::uint32_t pattern_;
    std::vector<std::uint32_t> pixels_;
};

/// Calls `action(target row, source row)` for every row of an axis. From the end when the pixels
/// move down inside one surface, so that none is overwritten before it is read.
template <class Action>
void forEachRow(const Axis& rows, bool fromEnd, Action action) {
    const std::size_t count = rows.sources.size();
    for (std::size_t step = 0; step < count; ++step) {
        const std::size_t i = fromEnd ? count - 1 - step : step;
        action(static_cast<std::int32_t>(rows.first + static_cast<std::int64_t>(i)),
               rows.sources[i]);
    }
}

/// Writes the same pixels into rows `top` to before `bottom`, from pixel `first` on.
void fillRows(Surface& target, std::uint32_t first, std::span<const std::uint32_t> pixels,
              std::int32_t top, std::int32_t bottom) {
    const std::uint32_t bits = target.format().bits;
    writeRaw(target.ownRow(top), bits, first, pixels);
    for (std::int32_t y = top + 1; y < bottom; ++y) {
        if (bits < 8) {
            writeRaw(target.ownRow(y), bits, first, pixels);
        } else {
            std::memcpy(target.ownRow(y) + first * (bits / 8), target.row(top) + first * (bits / 8),
                        pixels.size() * (bits / 8));
        }
    }
}

}  // namespace

PixelView viewOf(const Surface& surface) {
    return {surface.bits(),      surface.stride(),  surface.width(),     surface.height(),
            surface.isTopDown(), &surface.format(), surface.isMonochrome};
}

bool usesSource(std::uint32_t rasterOperation) {
    const std::uint32_t table = tableOf(rasterOperation);
    return ((table >> 2) & 0x33) != (table & 0x33);
}

bool usesPattern(std::uint32_t rasterOperation) {
    const std::uint32_t table = tableOf(rasterOperation);
    return (table >> 4) != (table & 0xF);
}

BinaryOperation withoutSource(std::uint32_t rasterOperation) {
    const std::uint32_t table = tableOf(rasterOperation);
    return static_cast<BinaryOperation>((table & 0b11) | ((table >> 2) & 0b1100));
}

void transfer(Surface& target, Area to, const PixelView& source, Area from,
              std::uint32_t rasterOperation, const OperationColors& colors) {
    const Axis columns = matched(to.x, to.width, target.width(), from.x, from.width, source.width);
    const Axis rows = matched(to.y, to.height, target.height(), from.y, from.height, source.height);
    if (columns.sources.empty() || rows.sources.empty()) {
        return;
    }
    target.own();
    const bool fromEnd = target.bits() == source.bits && to.y > from.y;
    const bool isPlain = tableOf(rasterOperation) == kCopyTable && isStraight(columns.sources);
    const RowCopy copy =
        isPlain ? RowCopy(*source.format, target.format(), target.isMonochrome) : RowCopy();
    if (copy) {
        forEachRow(rows, fromEnd, [&](std::int32_t y, std::int32_t sourceY) {
            copy(target.ownRow(y), static_cast<std::size_t>(columns.first), source.row(sourceY),
                 static_cast<std::size_t>(columns.sources.front()), columns.sources.size());
        });
        return;
    }
    SourceRows reader(target, source, columns.sources, colors);
    TargetRows writer(target, columns.first, columns.sources.size(), rasterOperation,
                      colors.pattern);
    forEachRow(rows, fromEnd,
               [&](std::int32_t y, std::int32_t sourceY) { writer.write(y, reader.row(sourceY)); });
}

void fill(Surface& target, Area to, std::uint32_t color, BinaryOperation operation) {
    const std::int64_t left = std::max<std::int64_t>(to.x + std::min<std::int64_t>(to.width, 0), 0);
    const std::int64_t top = std::max<std::int64_t>(to.y + std::min<std::int64_t>(to.height, 0), 0);
    const std::int64_t right =
        std::min<std::int64_t>(to.x + std::max<std::int64_t>(to.width, 0), target.width());
    const std::int64_t bottom =
        std::min<std::int64_t>(to.y + std::max<std::int64_t>(to.height, 0), target.height());
    if (left >= right || top >= bottom) {
        return;
    }
    target.own();
    const auto first = static_cast<std::uint32_t>(left);
    const std::uint32_t bits = target.format().bits;
    const std::uint32_t raw = rawOf(target, color);
    const auto table = static_cast<std::uint32_t>(operation);
    std::vector<std::uint32_t> pixels(static_cast<std::size_t>(right - left),
                                      combined(table, raw, 0));
    if (combined(table, raw, 0) == combined(table, raw, ~0u)) {
        fillRows(target, first, pixels, static_cast<std::int32_t>(top),
                 static_cast<std::int32_t>(bottom));
        return;
    }
    for (auto y = static_cast<std::int32_t>(top); y < bottom; ++y) {
        readRaw(target.row(y), bits, first, pixels);
        for (std::uint32_t& pixel : pixels) {
            pixel = combined(table, raw, pixel);
        }
        writeRaw(target.ownRow(y), bits, first, pixels);
    }
}

}  // namespace orvane::platform

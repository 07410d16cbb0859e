#include "pictures/TargaPixels.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <memory>

namespace orvane::targa {
namespace {

constexpr std::uint8_t kRunBit = 0x80;

/// One pixel from the file's form to blue, green, red. Of 16 bits each component takes the upper
/// five, the low three stay 0; of 32 bits the alpha byte is dropped.
template <int bytesPerPixel>
inline void convertPixel(const std::uint8_t* source, std::uint8_t* target) {
    if constexpr (bytesPerPixel == 2) {
        const unsigned value = static_cast<unsigned>(source[1]) << 8 | source[0];
        target[0] = static_cast<std::uint8_t>((value & 0x1F) << 3);
        target[1] = static_cast<std::uint8_t>((value & 0x3E0) >> 2);
        target[2] = static_cast<std::uint8_t>((value & 0x7C00) >> 7);
    } else {
        target[0] = source[0];
        target[1] = source[1];
        target[2] = source[2];
    }
}

template <int bytesPerPixel>
void convertPixels(const std::uint8_t* source, std::uint8_t* target, std::int32_t count) {
    if constexpr (bytesPerPixel == 3) {
        std::memcpy(target, source, static_cast<std::size_t>(count) * 3);
    } else {
        for (std::int32_t i = 0; i < count; ++i) {
            convertPixel<bytesPerPixel>(source, target);
            source += bytesPerPixel;
            target += 3;
        }
    }
}

/// Fills with one pixel, doubling what is there already.
void repeatPixel(const std::uint8_t* pixel, std::uint8_t* target, std::int32_t count) {
    std::memcpy(target, pixel, 3);
    std::size_t done = 3;
    const std::size_t all = static_cast<std::size_t>(count) * 3;
    while (done < all) {
        const std::size_t step = std::min(done, all - done);
        std::memcpy(target + done, target, step);
        done += step;
    }
}

/// The next place to store to: pixel `x` of stored row `row`.
struct Cursor {
    explicit Cursor(const Rows& target) : rows(target), place(target.stored(0)) {}

    bool full() const { return row == rows.height; }

    /// How many of `count` pixels still go into the current row.
    std::int32_t room(std::int32_t count) const { return std::min(count, rows.width - x); }

    void advance(std::int32_t count) {
        x += count;
        place += static_cast<std::size_t>(count) * 3;
        if (x == rows.width) {
            x = 0;
            if (++row < rows.height) place = rows.stored(row);
        }
    }

    const Rows& rows;
    std::uint8_t* place;
    std::int32_t x = 0;
    std::int32_t row = 0;
};

/// The next `size` bytes of the file in one piece: in the buffer where they lie together, else
/// collected in `spare`.
const std::uint8_t* take(BinaryFile& file, std::size_t size, std::uint8_t* spare) {
    const auto buffered = file.peekBuffered();
    if (buffered.size() >= size) {
        file.skip(size);
        return buffered.data();
    }
    file.get({spare, size});
    return spare;
}

template <int bytesPerPixel>
bool storeRun(Cursor& cursor, const std::uint8_t* source, std::int32_t count) {
    std::array<std::uint8_t, 3> pixel;
    convertPixel<bytesPerPixel>(source, pixel.data());
    while (count > 0) {
        if (cursor.full()) return false;
        const std::int32_t part = cursor.room(count);
        repeatPixel(pixel.data(), cursor.place, part);
        cursor.advance(part);
        count -= part;
    }
    return true;
}

template <int bytesPerPixel>
bool storeRaw(Cursor& cursor, const std::uint8_t* source, std::int32_t count) {
    while (count > 0) {
        if (cursor.full()) return false;
        const std::int32_t part = cursor.room(count);
        convertPixels<bytesPerPixel>(source, cursor.place, part);
        cursor.advance(part);
        source += static_cast<std::size_t>(part) * bytesPerPixel;
        count -= part;
    }
    return true;
}

}  // namespace

template <int bytesPerPixel>
bool readRows(BinaryFile& file, const Rows& rows) {
    const std::size_t size = static_cast<std::size_t>(rows.width) * bytesPerPixel;
    const auto row = std::make_unique<std::uint8_t[]>(size);
    for (std::int32_t index = 0; index < rows.height && !file.pastEnd(); ++index) {
        if constexpr (bytesPerPixel == 3) {
            file.get({rows.stored(index), size});
        } else {
            file.get({row.get(), size});
            convertPixels<bytesPerPixel>(row.get(), rows.stored(index), rows.width);
        }
    }
    return true;
}

template <int bytesPerPixel>
bool readRuns(BinaryFile& file, const Rows& rows) {
    std::array<std::uint8_t, static_cast<std::size_t>(128 * bytesPerPixel)> spare;
    Cursor cursor(rows);
    // Past the end every header byte would read as a raw packet of one black pixel, up to the end
    // of the image: it is black already.
    while (!cursor.full() && !file.pastEnd()) {
        const auto header = file.get<std::uint8_t>();
        const std::int32_t count = (header & ~kRunBit) + 1;
        const bool run = (header & kRunBit) != 0;
        const auto size = static_cast<std::size_t>(run ? bytesPerPixel : count * bytesPerPixel);
        const std::uint8_t* source = take(file, size, spare.data());
        const bool stored = run ? storeRun<bytesPerPixel>(cursor, source, count)
                                : storeRaw<bytesPerPixel>(cursor, source, count);
        if (!stored) return false;
    }
    return true;
}

template bool readRows<2>(BinaryFile&, const Rows&);
template bool readRows<3>(BinaryFile&, const Rows&);
template bool readRows<4>(BinaryFile&, const Rows&);
template bool readRuns<2>(BinaryFile&, const Rows&);
template bool readRuns<3>(BinaryFile&, const Rows&);
template bool readRuns<4>(BinaryFile&, const Rows&);

}  // namespace orvane::targa

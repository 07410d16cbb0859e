#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <vector>

namespace orvane::test {

/// A TIFF file of one page in uncompressed strips or tiles, built field by field.
struct TiffFile {
    using Bytes = std::vector<std::uint8_t>;

    std::uint32_t width = 1;
    std::uint32_t height = 1;
    int bits = 8;
    int samples = 3;
    int photometric = 2;  ///< 0 white is zero, 1 black is zero, 2 RGB, 3 palette, 5 inks
    bool bigEndian = false;
    bool separate = false;
    std::uint32_t rowsPerStrip = 0;  ///< 0: one strip
    std::uint32_t tile = 0;          ///< the side of a tile, a multiple of 16; 0: strips
    int extra = -1;                  ///< the kind of the sample behind the colours; -1: none told
    std::vector<std::uint16_t> palette;  ///< all reds, all greens, all blues
    /// Further tags with one 16-bit number each.
    std::map<int, int> tags;
    /// The value of a sample at a place; what has more bits than `bits` is cut.
    std::function<int(std::uint32_t x, std::uint32_t y, int sample)> sample =
        [](std::uint32_t, std::uint32_t, int) { return 0; };

    Bytes bytes() const {
        Bytes out;
        const char order = bigEndian ? 'M' : 'I';
        out.push_back(static_cast<std::uint8_t>(order));
        out.push_back(static_cast<std::uint8_t>(order));
        put(out, 42, 2);
        put(out, 0, 4);
        std::vector<std::uint32_t> offsets;
        std::vector<std::uint32_t> sizes;
        for (const Bytes& piece : pieces()) {
            offsets.push_back(static_cast<std::uint32_t>(out.size()));
            sizes.push_back(static_cast<std::uint32_t>(piece.size()));
            out.insert(out.end(), piece.begin(), piece.end());
        }
        std::map<int, Field> fields;
        const auto shorts = [](std::vector<std::uint32_t> values) { return Field{3, values}; };
        const auto many = [](int value, int count) {
            return std::vector<std::uint32_t>(static_cast<std::size_t>(count),
                                              static_cast<std::uint32_t>(value));
        };
        fields[256] = {4, {width}};
        fields[257] = {4, {height}};
        fields[258] = shorts(many(bits, samples));
        fields[259] = shorts({1});
        fields[262] = shorts(many(photometric, 1));
        fields[277] = shorts(many(samples, 1));
        fields[284] = shorts({separate ? 2u : 1u});
        if (tile == 0) fields[278] = {4, {stripRows()}};
        fields[tile == 0 ? 273 : 324] = {4, offsets};
        fields[tile == 0 ? 279 : 325] = {4, sizes};
        if (tile != 0) {
            fields[322] = {4, {tile}};
            fields[323] = {4, {tile}};
        }
        if (extra >= 0) fields[338] = shorts(many(extra, 1));
        if (!palette.empty()) fields[320] = {3, {palette.begin(), palette.end()}};
        for (const auto& [tag, value] : tags)
            fields[tag] = shorts(many(value, 1));
        addDirectory(out, fields);
        return out;
    }

private:
    struct Field {
        int type = 3;  ///< 3: numbers of 16 bits, 4: of 32 bits
        std::vector<std::uint32_t> values;
    };

    void put(Bytes& out, std::uint32_t value, int size) const {
        for (int i = 0; i < size; ++i) {
            const int shift = 8 * (bigEndian ? size - 1 - i : i);
            out.push_back(static_cast<std::uint8_t>(value >> shift));
        }
    }

    std::uint32_t stripRows() const { return rowsPerStrip == 0 ? height : rowsPerStrip; }

    Bytes piece(std::uint32_t x0, std::uint32_t y0, std::uint32_t columns, std::uint32_t rows,
                int first, int count) const {
        Bytes out;
        for (std::uint32_t y = y0; y < y0 + rows; ++y) {
            std::uint32_t held = 0;
            int have = 0;
            for (std::uint32_t x = x0; x < x0 + columns; ++x) {
                for (int i = first; i < first + count; ++i) {
                    const int inside = x < width && y < height ? sample(x, y, i) : 0;
                    const auto value = static_cast<std::uint32_t>(inside) & ((1u << bits) - 1);
                    if (bits == 16) {
                        put(out, value, 2);
                        continue;
                    }
                    held = held << bits | value;
                    for (have += bits; have >= 8; have -= 8)
                        out.push_back(static_cast<std::uint8_t>(held >> (have - 8)));
                }
            }
            if (have > 0) out.push_back(static_cast<std::uint8_t>(held << (8 - have)));
        }
        return out;
    }

    std::vector<Bytes> pieces() const {
        std::vector<Bytes> all;
        const std::uint32_t columns = tile == 0 ? width : tile;
        const std::uint32_t rows = tile == 0 ? stripRows() : tile;
        for (int plane = 0; plane < (separate ? samples : 1); ++plane) {
            for (std::uint32_t y = 0; y < height; y += rows) {
                for (std::uint32_t x = 0; x < width; x += columns) {
                    all.push_back(piece(x, y, columns,
                                        tile == 0 ? std::min(rows, height - y) : tile, plane,
                                        separate ? 1 : samples));
                }
            }
        }
        return all;
    }

    void addDirectory(Bytes& out, const std::map<int, Field>& fields) const {
        std::map<int, std::uint32_t> places;
        for (const auto& [tag, field] : fields) {
            const int size = field.type == 3 ? 2 : 4;
            if (field.values.size() * static_cast<std::size_t>(size) <= 4) continue;
            out.resize((out.size() + 3) / 4 * 4);
            places[tag] = static_cast<std::uint32_t>(out.size());
            for (const std::uint32_t value : field.values)
                put(out, value, size);
        }
        out.resize((out.size() + 3) / 4 * 4);
        Bytes place;
        put(place, static_cast<std::uint32_t>(out.size()), 4);
        std::copy(place.begin(), place.end(), out.begin() + 4);
        put(out, static_cast<std::uint32_t>(fields.size()), 2);
        for (const auto& [tag, field] : fields) {
            put(out, static_cast<std::uint32_t>(tag), 2);
            put(out, static_cast<std::uint32_t>(field.type), 2);
            put(out, static_cast<std::uint32_t>(field.values.size()), 4);
            if (places.contains(tag)) {
                put(out, places.at(tag), 4);
                continue;
            }
            const int size = field.type == 3 ? 2 : 4;
            for (const std::uint32_t value : field.values)
                put(out, value, size);
            put(out, 0, 4 - size * static_cast<int>(field.values.size()));
        }
        put(out, 0, 4);
    }
};

}  // namespace orvane::test

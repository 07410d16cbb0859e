#include "rgb_image.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace orvane::tool {

namespace {

/// The light of each channel value, by the curve of sRGB (IEC 61966-2-1).
const std::array<float, 256>& lights() {
    static const std::array<float, 256> table = [] {
        std::array<float, 256> light{};
        for (std::size_t i = 0; i < light.size(); ++i) {
            const double value = static_cast<double>(i) / 255;
            light[i] = static_cast<float>(
                value <= 0.04045 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4));
        }
        return light;
    }();
    return table;
}

std::uint8_t channelOf(double light) {
    const double value =
        light <= 0.0031308 ? light * 12.92 : 1.055 * std::pow(light, 1 / 2.4) - 0.055;
    return static_cast<std::uint8_t>(std::lround(std::clamp(value, 0.0, 1.0) * 255));
}

/// A part of a row or column that falls on one pixel: from `first` on, with the weight of each.
struct Piece {
    std::uint32_t first = 0;
    std::vector<float> weights;
};

std::vector<Piece> pieces(std::uint32_t from, std::uint32_t to) {
    std::vector<Piece> all(to);
    const double step = static_cast<double>(from) / to;
    for (std::uint32_t i = 0; i < to; ++i) {
        const double start = i * step;
        const double end = std::min<double>((i + 1) * step, from);
        Piece& piece = all[i];
        piece.first = std::min(static_cast<std::uint32_t>(start), from - 1);
        if (step < 1) {
            piece.weights = {1.0f};
            continue;
        }
        for (std::uint32_t at = piece.first; at < from && at < end; ++at) {
            const double share = std::min<double>(end, at + 1.0) - std::max<double>(start, at);
            piece.weights.push_back(static_cast<float>(share / (end - start)));
        }
    }
    return all;
}

struct Light {
    double red = 0;
    double green = 0;
    double blue = 0;
};

}  // namespace

void RgbImage::fill(std::uint32_t x, std::uint32_t y, std::uint32_t columns, std::uint32_t rows,
                    Rgb colour) {
    for (std::uint32_t row = y; row < std::min(height, y + rows); ++row) {
        for (std::uint32_t column = x; column < std::min(width, x + columns); ++column)
            at(column, row) = colour;
    }
}

RgbImage scaled(const RgbImage& image, std::uint32_t width, std::uint32_t height) {
    RgbImage out(width, height);
    const std::vector<Piece> columns = pieces(image.width, width);
    const std::vector<Piece> rows = pieces(image.height, height);
    const std::array<float, 256>& light = lights();
    std::vector<Light> sums(width);
    for (std::uint32_t y = 0; y < height; ++y) {
        std::fill(sums.begin(), sums.end(), Light{});
        for (std::size_t i = 0; i < rows[y].weights.size(); ++i) {
            const float rowWeight = rows[y].weights[i];
            const Rgb* from = &image.at(0, rows[y].first + static_cast<std::uint32_t>(i));
            for (std::uint32_t x = 0; x < width; ++x) {
                for (std::size_t j = 0; j < columns[x].weights.size(); ++j) {
                    const Rgb& pixel = from[columns[x].first + j];
                    const double weight =
                        static_cast<double>(rowWeight) * static_cast<double>(columns[x].weights[j]);
                    sums[x].red += weight * static_cast<double>(light[pixel.red]);
                    sums[x].green += weight * static_cast<double>(light[pixel.green]);
                    sums[x].blue += weight * static_cast<double>(light[pixel.blue]);
                }
            }
        }
        for (std::uint32_t x = 0; x < width; ++x) {
            out.at(x, y) = {channelOf(sums[x].red), channelOf(sums[x].green),
                            channelOf(sums[x].blue)};
        }
    }
    return out;
}

}  // namespace orvane::tool

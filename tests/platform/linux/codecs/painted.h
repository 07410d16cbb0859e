#pragma once

#include "platform/linux/codecs/images.h"

#include <gtest/gtest.h>

#include <array>
#include <cstring>
#include <memory>
#include <ostream>
#include <span>
#include <vector>

namespace orvane::codecs::test {

/// A pixel of a painted canvas.
struct Painted {
    int red;
    int green;
    int blue;

    bool operator==(const Painted&) const = default;
};

inline void PrintTo(const Painted& pixel, std::ostream* to) {
    *to << '(' << pixel.red << ' ' << pixel.green << ' ' << pixel.blue << ')';
}

/// What a canvas shows before.
inline constexpr Painted kGround{192, 100, 7};

/// A file examined and painted over the ground. The file sits in memory of its own, so that a read
/// behind its end is seen.
class Image {
public:
    explicit Image(const std::vector<uint8_t>& file, const Limits& limits = {},
                   bool bottomUp = false)
        : bytes_(std::make_unique<uint8_t[]>(file.size())) {
        std::copy(file.begin(), file.end(), bytes_.get());
        const std::span<const uint8_t> whole(bytes_.get(), file.size());
        examined = examineAny(whole, facts, limits);
        if (examined != ORVANE_CODEC_OK) return;
        pixels_.resize(size_t{facts.width} * facts.height * 4);
        for (size_t i = 0; i < pixels_.size(); i += 4) {
            pixels_[i] = kGround.blue;
            pixels_[i + 1] = kGround.green;
            pixels_[i + 2] = kGround.red;
        }
        stride_ = static_cast<ptrdiff_t>(facts.width) * 4;
        top_ = pixels_.data();
        if (bottomUp) {
            top_ += stride_ * (static_cast<ptrdiff_t>(facts.height) - 1);
            stride_ = -stride_;
        }
        const OrvaneCanvas canvas{facts.width, facts.height, top_, stride_};
        painted = paintAny(whole, canvas, limits);
    }

    Painted pixel(uint32_t x, uint32_t y) const {
        const uint8_t* at = top_ + static_cast<ptrdiff_t>(y) * stride_ + size_t{x} * 4;
        EXPECT_EQ(at[3], 0) << "the fourth byte at " << x << ", " << y;
        return {at[2], at[1], at[0]};
    }

    OrvaneImageFacts facts{};
    OrvaneCodecResult examined = ORVANE_CODEC_DAMAGED;
    OrvaneCodecResult painted = ORVANE_CODEC_DAMAGED;

private:
    std::unique_ptr<uint8_t[]> bytes_;
    std::vector<uint8_t> pixels_;
    ptrdiff_t stride_ = 0;
    uint8_t* top_ = nullptr;
};

/// A colour of some opacity over the ground, rounded to the nearest.
inline Painted over(Painted colour, int alpha) {
    const auto channel = [alpha](int own, int ground) {
        return (own * alpha + 127) / 255 + (ground * (255 - alpha) + 127) / 255;
    };
    return {channel(colour.red, kGround.red), channel(colour.green, kGround.green),
            channel(colour.blue, kGround.blue)};
}

/// Every beginning of a file is refused or painted, the first `mustFail` of them refused.
inline void paintEveryBeginning(const std::vector<uint8_t>& file, size_t mustFail) {
    for (size_t length = 0; length < file.size(); ++length) {
        const Image image({file.begin(), file.begin() + static_cast<ptrdiff_t>(length)});
        if (length < mustFail) {
            EXPECT_NE(image.painted, ORVANE_CODEC_OK) << "the first " << length << " bytes";
        }
    }
}

}  // namespace orvane::codecs::test

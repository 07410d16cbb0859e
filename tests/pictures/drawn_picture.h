#pragma once

#include "support/temp_dir.h"

#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace orvane::test {

/// Colours and the letters that stand for them: 0x00RRGGBB.
using Letters = std::map<std::uint32_t, char>;

inline const Letters kLetters = {{0xFFFFFF, '.'}, {0x000000, '#'}, {0xFF0000, 'r'},
                                 {0x00FF00, 'g'}, {0x0000FF, 'b'}, {0xFFFF00, 'y'},
                                 {0x00FFFF, 'c'}, {0xFF00FF, 'm'}, {0x808080, 'h'}};

/// What `IPicture::Render` makes of a picture on a ground of one colour: rows of letters from the
/// top, '?' for a colour without one.
///
/// The picture fills `width` by `height` pixels.
std::vector<std::uint32_t> drawnPixels(const std::string& file, int width, int height,
                                       std::uint32_t ground = 0xFFFFFF);
std::vector<std::string> asLetters(const std::vector<std::uint32_t>& pixels, int width);

}  // namespace orvane::test

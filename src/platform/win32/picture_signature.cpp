#include "platform/win32/picture_signature.h"

#include <algorithm>
#include <string_view>

namespace orvane::platform {

namespace {

using namespace std::string_view_literals;

/// Where the four bytes " EMF" stand in the header record of an enhanced metafile.
constexpr std::size_t kEmfSignatureOffset = 40;

bool hasAt(std::span<const std::uint8_t> start, std::size_t offset, std::string_view bytes) {
    return start.size() >= offset + bytes.size() &&
           std::ranges::equal(start.subspan(offset, bytes.size()), bytes,
                              [](std::uint8_t a, char b) { return static_cast<char>(a) == b; });
}

}  // namespace

PictureSignature pictureSignature(std::span<const std::uint8_t> start) {
    const auto begins = [start](std::string_view bytes) { return hasAt(start, 0, bytes); };
    if (begins("BM"sv)) return PictureSignature::bmp;
    if (begins("\xFF\xD8\xFF"sv)) return PictureSignature::jpeg;
    if (begins("GIF8"sv)) return PictureSignature::gif;
    // The placeable header, and the plain ones in memory (1) and file (2) form, 9 words long.
    if (begins("\xD7\xCD\xC6\x9A"sv) || begins("\1\0\x09\0"sv) || begins("\2\0\x09\0"sv)) {
        return PictureSignature::wmf;
    }
    if (begins("\1\0\0\0"sv) && hasAt(start, kEmfSignatureOffset, " EMF"sv)) {
        return PictureSignature::emf;
    }
    if (begins("\0\0\1\0"sv)) return PictureSignature::ico;
    if (begins("\0\0\2\0"sv)) return PictureSignature::cur;
    return PictureSignature::unknown;
}

}  // namespace orvane::platform

#include "pictures/CFileTGA.h"

#include "frame/arithmetic.h"
#include "frame/values/conversions.h"
#include "pictures/TargaPixels.h"
#include "pictures/decoding.h"
#include "pictures/modBitmapWorks.h"

#include <array>

namespace orvane {
namespace {

constexpr std::uint8_t kUncompressed = 2;
constexpr std::uint8_t kRunLength = 10;
constexpr std::int64_t kHeaderSize = 18;

/// The header fields that are used; the others are read and ignored.
struct Header {
    std::uint8_t colorMapType = 0;
    std::uint8_t imageType = 0;
    std::int32_t colorMapLength = 0;
    std::uint8_t colorMapEntrySize = 0;
    std::int32_t width = 0;
    std::int32_t height = 0;
    std::uint8_t depth = 0;
    bool bottomUp = true;
};

Header readHeader(BinaryFile& file) {
    std::array<std::uint8_t, kHeaderSize> bytes{};
    file.get(bytes);
    const auto signedWord = [&bytes](std::size_t at) {
        return static_cast<std::int16_t>(bytes[at] | bytes[at + 1] << 8);
    };
    Header header;
    header.colorMapType = bytes[1];
    header.imageType = bytes[2];
    header.colorMapLength = bytes[6] * 256 + bytes[5];
    header.colorMapEntrySize = bytes[7];
    header.width = signedWord(12);
    header.height = signedWord(14);
    header.depth = bytes[16];
    header.bottomUp = (bytes[17] & 0x20) == 0;
    return header;
}

bool isTrueColor(const Header& header) {
    return header.imageType == kUncompressed || header.imageType == kRunLength;
}

/// The size of a colour map goes through floating point: entries of 15 bits count as 1.875 bytes.
/// The new position is that of the last header byte plus the size, so the next read begins one
/// byte before the end of the map.
void skipColorMap(BinaryFile& file, const Header& header) {
    if (header.colorMapType == 0) return;
    const double size = header.colorMapEntrySize / 8.0 * header.colorMapLength;
    file.seek(kHeaderSize + static_cast<std::int64_t>(roundHalfEven(size)));
}

/// Whether the file's header alone already decides that the load fails, so that no memory is taken
/// and nothing is read for it.
bool mustFail(const Header& header, std::int32_t pad) {
    if (header.imageType == kUncompressed) {
        // Rows of 32 bits are stepped back three rows at a time instead of two when they are
        // stored from the bottom: any such image of more than one row climbs out of the buffer.
        return header.depth == 32 && header.bottomUp && header.height > 1;
    }
    // The test for the end of a top-down run-length image is off by the padding of a row: without
    // padding one more packet is read, whose first pixel lies behind the image.
    return (header.depth == 16 || header.depth == 24 || header.depth == 32) && !header.bottomUp &&
           pad == 0;
}

/// The widths are computed in 16-bit arithmetic, which sets the limits: 10922 for every file, 8191
/// where rows of 32 bits are read.
std::int32_t rowPadding(const Header& header, std::int32_t stride) {
    const auto width = static_cast<std::int16_t>(header.width);
    const std::int32_t pad = stride - checkedMultiply(width, std::int16_t{3});
    if (header.imageType == kUncompressed && header.depth == 32) {
        checkedMultiply(width, std::int16_t{4});
    }
    return pad;
}

bool decode(BinaryFile& file, DecodedImage& image) {
    const Header header = readHeader(file);
    if (!isTrueColor(header)) return false;
    if (header.width <= 0 || header.height <= 0) raise(error::kSubscriptOutOfRange);
    image.Width = header.width;
    image.Height = header.height;
    image.BitsPerPixel = 24;
    image.Palette.reset();
    const std::int32_t stride = GetRowStride(image.Width, 24);
    const std::int32_t pad = rowPadding(header, stride);
    if (mustFail(header, pad)) raise(error::kSubscriptOutOfRange);
    image.Pixels = Array<std::uint8_t>(1, checkedMultiply(image.Height, stride));
    // An identification field is not skipped: its bytes are read as pixels.
    skipColorMap(file, header);

    const targa::Rows rows{image.Pixels.elements().data(), image.Width, image.Height, stride,
                           header.bottomUp};
    const bool runLength = header.imageType == kRunLength;
    switch (header.depth) {
    case 16:
        return runLength ? targa::readRuns<2>(file, rows) : targa::readRows<2>(file, rows);
    case 24:
        return runLength ? targa::readRuns<3>(file, rows) : targa::readRows<3>(file, rows);
    case 32:
        return runLength ? targa::readRuns<4>(file, rows) : targa::readRows<4>(file, rows);
    // Any other depth reads no pixel and still counts as success: a black picture.
    default:
        return true;
    }
}

}  // namespace

bool CFileTGA::Verify(WStringView fileName) {
    return tryReading(fileName, [](BinaryFile& file) { return isTrueColor(readHeader(file)); });
}

bool CFileTGA::ReadTGA(WStringView fileName, DecodedImage& image) {
    return tryReading(fileName, [&image](BinaryFile& file) { return decode(file, image); });
}

Picture CFileTGA::LoadPicture(WStringView fileName, const Ref<PictureInfo>& info) {
    return loadDecoded(*this, &ReadTGA, orvPictureTypeEx::orvPteTGA, fileName, info);
}

}  // namespace orvane

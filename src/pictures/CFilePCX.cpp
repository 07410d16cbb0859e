#include "pictures/CFilePCX.h"

#include "frame/arithmetic.h"
#include "pictures/PcxLines.h"
#include "pictures/decoding.h"
#include "pictures/modBitmapWorks.h"

#include <limits>

namespace orvane {
namespace {

constexpr std::uint8_t kManufacturer = 10;
constexpr std::int32_t kHeaderSize = 128;
constexpr std::uint8_t kPaletteMarker = 12;
/// The marker and 256 colours, the last bytes of the file.
constexpr std::int32_t kPaletteSize = 1 + 3 * 256;

/// The header fields that are used; the others are read and ignored.
struct Header {
    std::uint8_t manufacturer = 0;
    std::int16_t xMin = 0;
    std::int16_t yMin = 0;
    std::int16_t xMax = 0;
    std::int16_t yMax = 0;
    std::uint8_t planes = 0;
    std::int16_t bytesPerLine = 0;
};

/// Every field of two bytes is read into 16 bits with a sign, used or not: from 32768 on it
/// overflows and the file fails.
Header readHeader(BinaryFile& file) {
    Header header;
    header.manufacturer = file.get<std::uint8_t>();
    file.skip(3);  // version, encoding, bits per pixel
    header.xMin = ReadWord(file, true);
    header.yMin = ReadWord(file, true);
    header.xMax = ReadWord(file, true);
    header.yMax = ReadWord(file, true);
    ReadWord(file, true);  // resolution
    ReadWord(file, true);
    file.skip(48 + 1);  // palette of 16 colours, a reserved byte
    header.planes = file.get<std::uint8_t>();
    header.bytesPerLine = ReadWord(file, true);
    ReadWord(file, true);  // kind of palette
    return header;
}

/// From the first to the last pixel, in 16 bits: 32767 is the most.
std::int32_t extent(std::int16_t first, std::int16_t last) {
    const std::int16_t count = checkedAdd(checkedSubtract(last, first), std::int16_t{1});
    if (count <= 0) raise(error::kSubscriptOutOfRange);
    return count;
}

/// The palette that a file of one plane must have. False without its marker, which is missing in
/// most files of fewer colours.
bool readPalette(BinaryFile& file, std::int32_t fileSize, DecodedImage& image) {
    std::array<std::uint8_t, kPaletteSize> bytes{};
    file.seek(fileSize - kPaletteSize + 1);
    file.get(bytes);
    if (bytes[0] != kPaletteMarker) return false;
    auto& palette = image.Palette.emplace();
    const std::uint8_t* color = bytes.data() + 1;
    for (std::uint32_t& entry : palette) {
        entry = static_cast<std::uint32_t>(color[0] << 16 | color[1] << 8 | color[2]);
        color += 3;
    }
    return true;
}

/// What is behind the header, with a zero byte more than there is: the last one to be decoded.
pcx::Body readBody(BinaryFile& file, std::int32_t fileSize) {
    const std::int32_t size = fileSize - kHeaderSize + 1;
    pcx::Body body{Array<std::uint8_t>(0, checkedAdd(size - 1, pcx::Body::kSlack)),
                   static_cast<std::size_t>(size)};
    file.seek(kHeaderSize + 1);
    file.get(body.bytes.elements().first(body.size - 1));
    return body;
}

Array<std::uint8_t> allocatePixels(const DecodedImage& image, std::int32_t stride) {
    std::int32_t size = checkedMultiply(image.Height, stride);
    if (image.BitsPerPixel == 32) {
        // The picture is built from rows of 32 bits, which reach behind the rows of 24 that are
        // stored: what they find there is black.
        const std::int64_t drawn = std::int64_t{image.Width} * 4 * image.Height;
        if (std::in_range<std::int32_t>(drawn)) size = std::max(size, toLong32(drawn));
    }
    return {1, size};
}

bool decode(BinaryFile& file, DecodedImage& image) {
    const Header header = readHeader(file);
    if (header.manufacturer != kManufacturer) return false;
    image.Width = extent(header.xMin, header.xMax);
    image.Height = extent(header.yMin, header.yMax);
    image.BitsPerPixel = header.planes * 8;
    image.Palette.reset();
    const bool indexed = image.BitsPerPixel == 8;

    pcx::Layout layout;
    layout.width = image.Width;
    layout.height = image.Height;
    layout.stride = GetRowStride(image.Width, indexed ? 8 : 24);
    layout.bytesPerLine = header.bytesPerLine;
    layout.totalBytes =
        checkedMultiply(static_cast<std::int16_t>(header.planes), header.bytesPerLine);

    const std::int32_t fileSize = toLong32(file.lof());
    // A file that ends with its header holds no picture.
    if (fileSize <= kHeaderSize) raise(error::kSubscriptOutOfRange);
    if (indexed && !readPalette(file, fileSize, image)) return false;
    const bool possible = indexed ? pcx::canHoldIndices(layout, fileSize - kHeaderSize + 1)
                                  : header.planes != 0 && pcx::canHoldPlanes(layout);
    if (!possible) raise(error::kSubscriptOutOfRange);

    const pcx::Body body = readBody(file, fileSize);
    file.close();
    image.Pixels = allocatePixels(image, layout.stride);
    std::uint8_t* const pixels = image.Pixels.elements().data();
    return indexed ? pcx::readIndices(body, layout, pixels) : pcx::readPlanes(body, layout, pixels);
}

}  // namespace

bool CFilePCX::Verify(WStringView fileName) {
    return tryReading(fileName,
                      [](BinaryFile& file) { return file.get<std::uint8_t>() == kManufacturer; });
}

bool CFilePCX::ReadPCX(WStringView fileName, DecodedImage& image) {
    return tryReading(fileName, [&image](BinaryFile& file) { return decode(file, image); });
}

Picture CFilePCX::LoadPicture(WStringView fileName, const Ref<PictureInfo>& info) {
    return loadDecoded(*this, &ReadPCX, orvPictureTypeEx::orvPtePCX, fileName, info);
}

}  // namespace orvane

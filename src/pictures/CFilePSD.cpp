#include "pictures/CFilePSD.h"

#include "frame/arithmetic.h"
#include "pictures/PsdPlanes.h"
#include "pictures/decoding.h"
#include "pictures/modBitmapWorks.h"

namespace orvane {
namespace {

constexpr std::int32_t kSignature = 0x38425053;  // "8BPS"
constexpr std::int16_t kVersion = 1;             // 2 is the large document format
constexpr std::int16_t kMostChannels = 16;
constexpr std::int16_t kDepth = 8;
constexpr std::int16_t kRgb = 3;
constexpr std::int16_t kPackBits = 1;

/// Reads a file by a position of its own, counted from 1 in 32 bits.
class BigEndianReader {
public:
    explicit BigEndianReader(BinaryFile& file) : file_(file) {}

    std::int32_t position() const { return position_; }
    /// A length with the highest bit set leads out of 32 bits, and so does one past their end.
    void skip(std::int32_t count) { position_ = checkedAdd(position_, count); }

    /// Four bytes; raises 6 when the first is 128 or more.
    std::int32_t readLong() {
        std::int32_t value = 0;
        for (const std::int32_t shift : {24, 16, 8, 0})
            value = checkedAdd(value, ShiftLeft(byte(), shift));
        return value;
    }
    /// Two bytes; raises 6 when the first is 128 or more.
    std::int16_t readWord() {
        const std::int32_t high = ShiftLeft(byte(), 8);
        return toInteger16(high + byte());
    }

private:
    std::int32_t byte() {
        file_.seek(position_);
        skip(1);
        return file_.get<std::uint8_t>();
    }

    BinaryFile& file_;
    std::int32_t position_ = 1;
};

bool isPhotoshop(BinaryFile& file) {
    return BigEndianReader(file).readLong() == kSignature;
}

/// Reads the header and skips what stands between it and the image data; false for a file that is
/// refused. The position is behind the compression then.
bool readHeader(BigEndianReader& reader, psd::Header& header) {
    if (reader.readLong() != kSignature) return false;
    if (reader.readWord() != kVersion) return false;
    reader.skip(6);
    header.channels = reader.readWord();
    if (header.channels > kMostChannels) return false;
    header.height = reader.readLong();
    header.width = reader.readLong();
    if (reader.readWord() != kDepth) return false;
    if (reader.readWord() != kRgb) return false;
    // Colour mode data, image resources, layers and masks.
    for (int section = 0; section < 3; ++section)
        reader.skip(reader.readLong());
    const std::int16_t compression = reader.readWord();
    header.packed = compression == kPackBits;
    return compression <= kPackBits;
}

/// The bytes of the image data that matter, with the slack behind them.
Array<std::uint8_t> readData(BinaryFile& file, std::int32_t position, std::int32_t size) {
    Array<std::uint8_t> data(1, checkedAdd(size, psd::Planes::kSlack));
    file.seek(position);
    file.get(data.elements().first(static_cast<std::size_t>(size)));
    return data;
}

bool decode(BinaryFile& file, DecodedImage& image) {
    BigEndianReader reader(file);
    psd::Header header;
    if (!readHeader(reader, header)) return false;
    // Four bytes for each pixel and three more have to have numbers of 32 bits.
    const std::int32_t bytes =
        checkedMultiply(checkedMultiply(header.height, std::int32_t{4}), header.width);
    checkedAdd(bytes, std::int32_t{2});
    const std::int32_t rest = checkedSubtract(toLong32(file.lof()), reader.position()) + 1;
    if (bytes == 0 || rest < 1 || rest < psd::leastData(header)) raise(error::kSubscriptOutOfRange);

    const std::int32_t size = header.packed ? rest : toLong32(psd::rawColors(header));
    const Array<std::uint8_t> data = readData(file, reader.position(), size);
    file.close();
    psd::Planes planes(header, data.elements().data(), static_cast<std::size_t>(size));

    image.BitsPerPixel = 24;
    image.Width = header.width;
    image.Height = header.height;
    image.Palette.reset();
    const std::int32_t stride = GetRowStride(image.Width, 24);
    image.Pixels = Array<std::uint8_t>(1, checkedMultiply(stride, image.Height));
    std::uint8_t* pixels = image.Pixels.elements().data();
    for (std::int32_t y = 0; y < image.Height; ++y, pixels += stride)
        planes.nextRow(pixels);
    return true;
}

}  // namespace

bool CFilePSD::Verify(WStringView fileName) {
    return tryReading(fileName, isPhotoshop);
}

bool CFilePSD::ReadPSD(WStringView fileName, DecodedImage& image) {
    return tryReading(fileName, [&image](BinaryFile& file) { return decode(file, image); });
}

Picture CFilePSD::LoadPicture(WStringView fileName, const Ref<PictureInfo>& info) {
    return loadDecoded(*this, &ReadPSD, orvPictureTypeEx::orvPtePSD, fileName, info);
}

}  // namespace orvane

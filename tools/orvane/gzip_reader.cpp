#include "gzip_reader.h"

#include "utf8.h"

#include "orvane/OrvBase0301.h"

#include <array>
#include <vector>

namespace orvane::tool {

namespace {

/// The library's code page: bytes go to it, and come back, as one character each. Only the library
/// knows which characters these are; it gives them for character codes.
class ByteStrings {
public:
    explicit ByteStrings(host::Library& library) : bytes_(0x10000, '?') {
        const auto buffer = library.create<_orvStringBuffer>();
        host::Text text;
        for (std::size_t byte = units_.size(); byte-- > 0;) {
            VARIANT code{};
            code.vt = VT_I4;
            code.lVal = static_cast<LONG>(byte);
            library.check(buffer->Alloc(1, code));
            library.check(buffer->get_Value(text.receive()));
            units_[byte] = text.view().at(0);
            bytes_[units_[byte]] = static_cast<char>(byte);
        }
    }

    host::Text text(std::string_view bytes) const {
        std::u16string units;
        units.reserve(bytes.size());
        for (const char byte : bytes)
            units += units_[static_cast<std::uint8_t>(byte)];
        return host::Text(units);
    }

    std::string bytes(std::u16string_view units) const {
        std::string bytes;
        bytes.reserve(units.size());
        for (const char16_t unit : units)
            bytes += bytes_[unit];
        return bytes;
    }

private:
    std::array<char16_t, 256> units_{};
    std::vector<char> bytes_;
};

/// The length that the trailer of a file tells, which is that of its data when the library took it.
/// The data itself may be a gigabyte of NULs, and is a copy every time.
std::uint32_t toldLength(std::string_view file, const GzipFacts& facts) {
    const auto has = [&facts](int flag) { return (facts.flags & flag) != 0; };
    std::size_t header = 10 + facts.extra.size();
    if (has(gzfFileName)) header += facts.fileName.size() + 1;
    if (has(gzfComment)) header += facts.comment.size() + 1;
    if (has(gzfHCRC)) header += 2;
    constexpr std::size_t kLength = 4;
    if (file.size() < header + kLength) return 0;
    std::uint32_t length = 0;
    for (std::size_t i = 1; i <= kLength; ++i)
        length = length << 8 | static_cast<std::uint8_t>(file[file.size() - i]);
    return length;
}

}  // namespace

GzipFacts readGzip(host::Library& library, std::string_view bytes, GzipPart wanted) {
    const ByteStrings byteStrings(library);
    const auto archive = library.create<_orvGZipArchive>();
    gzUncompressErrors code = gzueSuccess;
    library.check(archive->UncompressData(byteStrings.text(bytes), &code));

    // A property's value, through a variable of its own type.
    const auto number =
        [&]<class Number>(HRESULT (STDMETHODCALLTYPE _orvGZipArchive::*property)(Number*)) {
            Number value{};
            library.check(((*archive).*property)(&value));
            return static_cast<std::int32_t>(value);
        };
    const auto text = [&](HRESULT (STDMETHODCALLTYPE _orvGZipArchive::*property)(BSTR*)) {
        host::Text value;
        library.check(((*archive).*property)(value.receive()));
        return byteStrings.bytes(value.view());
    };
    host::Text message;
    host::Text osName;
    gzArchiveOS os = gzosUnknown;
    library.check(archive->UncompressErrorCodeToString(code, message.receive()));
    library.check(archive->get_OS(&os));
    library.check(archive->OSCodeToString(os, osName.receive()));
    GzipFacts facts = {.code = code,
                       .message = toUtf8(message.view()),
                       .method = number(&_orvGZipArchive::get_CompressionMethod),
                       .flags = number(&_orvGZipArchive::get_Flags),
                       .time = number(&_orvGZipArchive::get_ModificationTime),
                       .extraFlags = number(&_orvGZipArchive::get_ExtraFlags),
                       .os = os,
                       .osName = toUtf8(osName.view()),
                       .extra = text(&_orvGZipArchive::get_ExtraData),
                       .fileName = text(&_orvGZipArchive::get_FileName),
                       .comment = text(&_orvGZipArchive::get_Comment),
                       .headerCrc = number(&_orvGZipArchive::get_HeaderCRC16),
                       .dataLength = number(&_orvGZipArchive::get_DataLen),
                       .dataCrc = number(&_orvGZipArchive::get_DataCRC32),
                       .dataSize = 0,
                       .data = {}};
    if (code == gzueSuccess) facts.dataSize = toldLength(bytes, facts);
    if (wanted == GzipPart::all) facts.data = text(&_orvGZipArchive::get_UncompressedData);
    return facts;
}

}  // namespace orvane::tool

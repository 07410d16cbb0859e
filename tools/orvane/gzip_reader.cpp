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

    std::u16string text(std::string_view bytes) const {
        std::u16string units;
        units.reserve(bytes.size());
        for (const char byte : bytes)
            units += units_[static_cast<std::uint8_t>(byte)];
        return units;
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

}  // namespace

GzipFacts readGzip(host::Library& library, std::string_view bytes) {
    const ByteStrings byteStrings(library);
    const auto archive = library.create<_orvGZipArchive>();
    gzUncompressErrors code = gzueSuccess;
    library.check(archive->UncompressData(host::Text(byteStrings.text(bytes)), &code));

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
    return {.code = code,
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
            .data = text(&_orvGZipArchive::get_UncompressedData)};
}

}  // namespace orvane::tool

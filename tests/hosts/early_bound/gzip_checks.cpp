#include "checks.h"

#include <string>

namespace orvane::tests::early_bound {
namespace {

/// A gzip file of the text "Orvane" with the name "a.txt".
constexpr unsigned char kMember[] = {
    0x1F, 0x8B, 0x08, 0x08, 0x10, 0x00, 0x00, 0x00, 0x02, 0x0B, 0x61, 0x2E, 0x74, 0x78, 0x74, 0x00,
    0xF3, 0x2F, 0x2A, 0x4B, 0xCC, 0x4B, 0x05, 0x00, 0x1C, 0x27, 0x39, 0x0D, 0x06, 0x00, 0x00, 0x00};

/// Bytes as the library takes them in texts: the character of its code page for each.
std::u16string byteString(Library& library, const unsigned char* bytes, std::size_t count) {
    const auto buffer = library.create<_orvStringBuffer>();
    std::u16string text;
    for (std::size_t i = 0; i < count; ++i) {
        Text unit;
        library.check(buffer->Alloc(1, longValue(bytes[i])));
        library.check(buffer->get_Value(unit.receive()));
        text += unit.view();
    }
    return text;
}

template <class Number>
void expectNumber(Library& library, _orvGZipArchive& archive,
                  HRESULT (STDMETHODCALLTYPE _orvGZipArchive::*property)(Number*), long expected,
                  const char* what) {
    Number value{};
    library.check((archive.*property)(&value));
    expect(static_cast<long>(value) == expected, what);
}

void expectText(Library& library, _orvGZipArchive& archive,
                HRESULT (STDMETHODCALLTYPE _orvGZipArchive::*property)(BSTR*),
                const char16_t* expected, const char* what) {
    Text value;
    library.check((archive.*property)(value.receive()));
    expect(value == expected, what);
}

void checkFields(Library& library, _orvGZipArchive& archive, bool clear) {
    const auto number = [&](auto property, long full, const char* what, long empty = 0) {
        expectNumber(library, archive, property, clear ? empty : full, what);
    };
    const auto text = [&](auto property, const char16_t* full, const char* what) {
        expectText(library, archive, property, clear ? u"" : full, what);
    };
    number(&_orvGZipArchive::get_ID1, 31, "ID1");
    number(&_orvGZipArchive::get_ID2, 139, "ID2");
    number(&_orvGZipArchive::get_CompressionMethod, 8, "CompressionMethod");
    number(&_orvGZipArchive::get_Flags, gzfFileName, "Flags");
    number(&_orvGZipArchive::get_ModificationTime, 16, "ModificationTime");
    number(&_orvGZipArchive::get_ExtraFlags, 2, "ExtraFlags");
    number(&_orvGZipArchive::get_OS, gzosNTFSFileSystem, "OS", gzosUnknown);
    text(&_orvGZipArchive::get_ExtraData, u"", "ExtraData");
    text(&_orvGZipArchive::get_FileName, u"a.txt", "FileName");
    text(&_orvGZipArchive::get_Comment, u"", "Comment");
    number(&_orvGZipArchive::get_HeaderCRC16, 0, "HeaderCRC16");
    number(&_orvGZipArchive::get_DataLen, 6, "DataLen");
    number(&_orvGZipArchive::get_DataCRC32, 221849372, "DataCRC32");
    text(&_orvGZipArchive::get_UncompressedData, u"Orvane", "UncompressedData");
}

}  // namespace

void checkGZip(Library& library) {
    const auto archive = library.create<_orvGZipArchive>();
    VARIANT_BOOL available = VARIANT_FALSE;
    library.check(archive->IsLibraryAvailable(&available));
    expect(available == VARIANT_TRUE, "IsLibraryAvailable");

    gzUncompressErrors code = gzueNotGZip;
    const std::u16string member = byteString(library, kMember, sizeof kMember);
    library.check(archive->UncompressData(Text(member), &code));
    expect(code == gzueSuccess, "UncompressData");
    checkFields(library, *archive, false);
    library.check(archive->Clear());
    checkFields(library, *archive, true);
    library.check(archive->UncompressData(nullptr, &code));
    expect(code == gzueNotGZip, "UncompressData of a null text");
    const Text magic(std::u16string_view(member).substr(0, 2));
    expect(errorOf(library, archive->UncompressData(magic, &code)) == 5, "the magic bytes alone");

    Text text;
    library.check(archive->OSCodeToString(HPFSFilesystem, text.receive()));
    expect(text == u"HPFS filesystem (OS/2, NT)", "OSCodeToString");
    library.check(archive->UncompressErrorCodeToString(gzueInvalidDataLen, text.receive()));
    expect(text == u"Неверное значение длины даных", "UncompressErrorCodeToString");
}

}  // namespace orvane::tests::early_bound

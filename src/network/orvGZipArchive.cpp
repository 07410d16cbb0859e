#include "network/orvGZipArchive.h"

#include "frame/automation/describe.h"
#include "frame/values/codepage.h"
#include "frame/values/text.h"
#include "network/cCRC32.h"
#include "platform/kernel32.h"
#include "platform/zlib.h"
#include "support/file_names.h"
#include "support/modules.h"
#include "support/platform_failure.h"
#include "support/text.h"

#include <algorithm>
#include <array>
#include <utility>
#include <vector>

namespace orvane {
namespace {

using platform::kernel32;
using platform::ModuleHandle;
using enum gzUncompressErrors;

constexpr const char16_t* kZlibLibrary = u"ZLibStdCall.DLL";
constexpr std::size_t kFixedHeader = 10;
constexpr std::int32_t kReservedFlags = 0xE0;

/// A valid header of a zlib stream (32K window, deflate, no dictionary). The one-call `uncompress`
/// expects one, and a member's body has none.
constexpr std::array<std::uint8_t, 2> kZlibHeader = {0x78, 0xDA};

/// Up to `count` units from `offset` on.
WStringView piece(WStringView data, std::size_t offset, std::size_t count) {
    return data.substr(std::min(offset, data.size()), count);
}

WStringView lastUnits(WStringView data, std::size_t count) {
    return data.substr(data.size() - std::min(count, data.size()));
}

void cutLeft(WStringView& data, std::size_t count) {
    data.remove_prefix(std::min(count, data.size()));
}

void cutRight(WStringView& data, std::size_t count) {
    data.remove_suffix(std::min(count, data.size()));
}

/// The byte at an offset; raises 5 behind the end.
std::uint8_t byteAt(WStringView data, std::size_t offset) {
    return static_cast<std::uint8_t>(asc(piece(data, offset, 1)));
}

/// The little-endian number in a byte string of exactly its size; any other string gives 0.
template <class Number>
Number numberIn(WStringView text) {
    if (text.size() != sizeof(Number)) return 0;
    const Array<std::uint8_t> bytes = nqStrConvB(text);
    std::uint32_t number = 0;
    for (std::size_t i = sizeof(Number); i-- > 0;)
        number = number << 8 | bytes.elements()[i];
    return static_cast<Number>(number);
}

/// Takes a field that a NUL ends, and the NUL, off the front of `rest`; false when there is none.
bool takeText(WStringView& rest, WString& field) {
    const std::size_t end = rest.find(u'\0');
    if (end == WStringView::npos) return false;
    field = WString(rest.substr(0, end));
    cutLeft(rest, end + 1);
    return true;
}

/// The most bytes that deflate can make of `count`: the shortest code for the longest match, of 258
/// bytes, takes two bits.
std::uint64_t mostInflated(std::size_t count) {
    return (std::uint64_t{count} * 4 + 1) * 258;
}

/// The folder of the module that holds this code.
WString ownFolder() {
    static const char inThisModule = 0;
    const ModuleHandle module = kernel32.GetModuleHandleExA(&inThisModule);
    // No module would stand for the host's executable.
    if (module == ModuleHandle::none) raisePlatformFailure();
    return nqGetFilePath(nqGetModulePrettyFileName(module));
}

struct Inflated {
    Array<std::uint8_t> bytes;
    std::size_t written = 0;  ///< of `bytes`; the rest is no data
};

/// What zlib makes of a member's body, `length` bytes at most. A body that ends too early or is
/// damaged gives what comes before that: its outcome is the CRC's matter, not zlib's.
///
/// The length is the word of whoever made the member. So there is no more room than the body could
/// fill: what is behind it stays NUL in any case and need not lie in memory.
Inflated inflated(WStringView body, std::uint32_t length) {
    std::vector<std::uint8_t> stream(kZlibHeader.size() + body.size());
    std::ranges::copy(kZlibHeader, stream.begin());
    toAnsi(body, std::span(stream).subspan(kZlibHeader.size()));
    const auto room =
        static_cast<std::uint32_t>(std::min<std::uint64_t>(length, mostInflated(body.size())));
    auto bytes = Array<std::uint8_t>::withBounds({Bound{0, room}});
    std::uint32_t written = room;
    if (platform::zlib.uncompress(bytes.elements(), written, stream) == platform::kZlibNotBound) {
        raisePlatformFailure();
    }
    return {std::move(bytes), std::min(written, room)};
}

}  // namespace

const automation::ClassTable& orvGZipArchive::table() {
    static const automation::ClassTable& table = automation::classTable([] {
        return automation::ClassBuilder<orvGZipArchive>(
                   "orvGZipArchive", automation::Instancing::creatable,
                   {0x83B21852, 0x51FB, 0x45B7, {0x94, 0x94, 0x85, 0x62, 0x88, 0x90, 0xAB, 0x76}},
                   {0xB3D796D6, 0x852D, 0x41E9, {0x9E, 0xBE, 0x72, 0xE5, 0x96, 0x41, 0xEB, 0x4A}})
            .method<&orvGZipArchive::OSCodeToString>("OSCodeToString", {"Code"})
            .method<&orvGZipArchive::UncompressErrorCodeToString>("UncompressErrorCodeToString",
                                                                  {"Code"})
            .method<&orvGZipArchive::Clear>("Clear")
            .method<&orvGZipArchive::UncompressData>("UncompressData", {"Data"})
            .propertyGet<&orvGZipArchive::ID1>("ID1")
            .propertyGet<&orvGZipArchive::ID2>("ID2")
            .propertyGet<&orvGZipArchive::CompressionMethod>("CompressionMethod")
            .propertyGet<&orvGZipArchive::Flags>("Flags")
            .propertyGet<&orvGZipArchive::ModificationTime>("ModificationTime")
            .propertyGet<&orvGZipArchive::ExtraFlags>("ExtraFlags")
            .propertyGet<&orvGZipArchive::OS>("OS")
            .propertyGet<&orvGZipArchive::ExtraData>("ExtraData")
            .propertyGet<&orvGZipArchive::FileName>("FileName")
            .propertyGet<&orvGZipArchive::Comment>("Comment")
            .propertyGet<&orvGZipArchive::HeaderCRC16>("HeaderCRC16")
            .propertyGet<&orvGZipArchive::DataLen>("DataLen")
            .propertyGet<&orvGZipArchive::DataCRC32>("DataCRC32")
            .propertyGet<&orvGZipArchive::UncompressedData>("UncompressedData")
            .method<&orvGZipArchive::IsLibraryAvailable>("IsLibraryAvailable")
            .build();
    });
    return table;
}

// Loaded ahead of the calls: they look for the library by its bare name, and one that the process
// has already is found wherever it came from.
orvGZipArchive::orvGZipArchive() : AutomationObject(table()) {
    library_ = kernel32.LoadLibraryA(toAnsi(kZlibLibrary));
    if (library_ != ModuleHandle::none) {
        fields_.os = {};  // what nobody has cleared
        return;
    }
    library_ = kernel32.LoadLibraryA(toAnsi(nqBuildFileName(ownFolder(), kZlibLibrary)));
    Clear();
}

orvGZipArchive::~orvGZipArchive() {
    if (library_ != ModuleHandle::none) kernel32.FreeLibrary(library_);
}

void orvGZipArchive::Clear() {
    fields_ = {};
}

bool orvGZipArchive::IsLibraryAvailable() {
    ErrorTrap trap;
    trap([] {
        std::string version;
        if (!platform::zlib.zlibVersion(version)) raisePlatformFailure();
    });
    return trap.number() == 0;
}

// What is read becomes the object's when all of it is: a failure, be it a code or an error, leaves
// no part of a header.
gzUncompressErrors orvGZipArchive::UncompressData(WStringView data) {
    Clear();
    if (!IsLibraryAvailable()) return gzueLibraryNotAvailable;
    Fields found;
    const gzUncompressErrors result = found.read(data);
    if (result == gzueSuccess) fields_ = std::move(found);
    return result;
}

gzUncompressErrors orvGZipArchive::Fields::read(WStringView data) {
    if (piece(data, 0, 2) != chr(31) + chr(139)) return gzueNotGZip;
    WStringView rest = readFixedHeader(data);
    if ((static_cast<std::int32_t>(flags) & kReservedFlags) != 0) return gzueInvalidFlags;
    gzUncompressErrors result = readOptionalFields(rest);
    if (result == gzueSuccess) result = readTrailer(rest);
    return result == gzueSuccess ? inflateBody(rest) : result;
}

/// Returns what follows the header. The method is not looked at: any will do.
WStringView orvGZipArchive::Fields::readFixedHeader(WStringView data) {
    id1 = byteAt(data, 0);
    id2 = byteAt(data, 1);
    method = byteAt(data, 2);
    flags = static_cast<gzArchiveFlags>(byteAt(data, 3));
    modificationTime = numberIn<std::int32_t>(piece(data, 4, 4));
    extraFlags = byteAt(data, 8);
    os = static_cast<gzArchiveOS>(byteAt(data, 9));
    cutLeft(data, kFixedHeader);
    return data;
}

bool orvGZipArchive::Fields::has(gzArchiveFlags flag) const {
    return (static_cast<std::int32_t>(flags) & static_cast<std::int32_t>(flag)) != 0;
}

// The extra field is not the format's own, whose length has two bytes and doesn't count itself:
// here it has four, and they are a part of the field. Files with a true one rarely get past it.
gzUncompressErrors orvGZipArchive::Fields::readOptionalFields(WStringView& rest) {
    if (has(gzArchiveFlags::gzfExtra)) {
        const auto length = numberIn<std::int32_t>(piece(rest, 0, 4));
        if (length > len(rest) || length < 1) return gzueInvalidExtraDataLen;
        extraData = left(rest, length);
        cutLeft(rest, static_cast<std::size_t>(length));
    }
    if (has(gzArchiveFlags::gzfFileName) && !takeText(rest, fileName)) {
        return gzueInvalidFileNameLen;
    }
    if (has(gzArchiveFlags::gzfComment) && !takeText(rest, comment)) return gzueInvalidCommentLen;
    if (has(gzArchiveFlags::gzfHCRC)) {
        headerCrc = numberIn<std::int16_t>(piece(rest, 0, 2));
        cutLeft(rest, 2);
    }
    return gzueSuccess;
}

/// The trailer is the very end of the data, whatever stands there; `rest` loses it.
gzUncompressErrors orvGZipArchive::Fields::readTrailer(WStringView& rest) {
    dataLength = numberIn<std::int32_t>(lastUnits(rest, 4));
    cutRight(rest, 4);
    if (dataLength < 0) return gzueInvalidDataLen;
    dataCrc = numberIn<std::int32_t>(lastUnits(rest, 4));
    cutRight(rest, 4);
    return gzueSuccess;
}

// The data has the length that the trailer tells, filled up with NULs where the body ends before
// that, and the CRC counts them. A length of 0 is taken without a look at the body.
gzUncompressErrors orvGZipArchive::Fields::inflateBody(WStringView body) {
    if (dataLength == 0) return dataCrc == 0 ? gzueSuccess : gzueCRCMismatch;
    const auto length = static_cast<std::uint32_t>(dataLength);
    Inflated data = inflated(body, length);
    const std::size_t fill = length - data.written;
    const auto written = Array<std::uint8_t>::borrow(
        data.bytes.elements().data(), {Bound{0, static_cast<std::uint32_t>(data.written)}});
    const auto crc = static_cast<std::uint32_t>(cCRC32().GetByteArrayCrc32(written));
    if (crc32OfZeros(crc, fill) != static_cast<std::uint32_t>(dataCrc)) return gzueCRCMismatch;
    if (length > kLongestText) raise(error::kOutOfMemory);
    // A zlib of old tells no length of an unclean end, and every end here is one.
    if (data.written != data.bytes.size()) dataLength = static_cast<std::int32_t>(data.written);
    uncompressed = fromAnsi(written.elements());
    uncompressed.edit().append(fill, u'\0');
    return gzueSuccess;
}

}  // namespace orvane

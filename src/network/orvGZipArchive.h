#pragma once

#include "frame/automation/automation_object.h"
#include "network/gzip_codes.h"
#include "platform/handles.h"

namespace orvane {

/// Reads one gzip member (RFC 1952) that is held whole in a byte string: walks its header, inflates
/// the body with zlib and checks the CRC. Which data it takes and which not is fixed by
/// peculiarities that hosts rely on; each is told where it stands in the code.
///
/// The fields tell of the last `UncompressData` if it succeeded; after one that gave another code
/// or raised an error they are as `Clear` leaves them. zlib is a library of its own, looked for on
/// the search path and beside this library; without it everything works but `UncompressData`.
class orvGZipArchive final : public automation::AutomationObject {
public:
    static const automation::ClassTable& table();

    /// Loads zlib. `OS` reads 0 until the first `Clear` or `UncompressData` when the first place to
    /// look had it, and 255 when it hadn't. The second place is this library's folder; raises what
    /// the platform's failure comes to when that can't be told.
    orvGZipArchive();
    ~orvGZipArchive() override;

    WString OSCodeToString(gzArchiveOS code) { return textOf(code); }
    WString UncompressErrorCodeToString(gzUncompressErrors code) { return textOf(code); }

    /// Takes all fields back to 0 and empty, and `OS` to `gzosUnknown`.
    void Clear();

    /// Reads a member into the fields. `data` is no text of one of them. Raises 5 for data that
    /// begins as a member does and is shorter than its fixed header, 7 when memory is short and for
    /// data longer than a text can be, 453 when the library called zlib has no `uncompress`.
    gzUncompressErrors UncompressData(WStringView data);

    std::uint8_t ID1() { return fields_.id1; }
    std::uint8_t ID2() { return fields_.id2; }
    std::uint8_t CompressionMethod() { return fields_.method; }
    gzArchiveFlags Flags() { return fields_.flags; }
    /// As it stands: seconds since 1970-01-01 UTC by the format.
    std::int32_t ModificationTime() { return fields_.modificationTime; }
    std::uint8_t ExtraFlags() { return fields_.extraFlags; }
    gzArchiveOS OS() { return fields_.os; }
    const WString& ExtraData() {
        return fields_.extraData;
    }  ///< byte string, its length bytes included
    const WString& FileName() { return fields_.fileName; }  ///< byte string
    const WString& Comment() { return fields_.comment; }    ///< byte string
    std::int16_t HeaderCRC16() { return fields_.headerCrc; }
    /// The bytes that zlib wrote; fewer than `UncompressedData` has when NULs follow them.
    std::int32_t DataLen() { return fields_.dataLength; }
    std::int32_t DataCRC32() { return fields_.dataCrc; }
    const WString& UncompressedData() { return fields_.uncompressed; }  ///< byte string

    /// True when zlib can be called now.
    bool IsLibraryAvailable();

private:
    /// What a member tells, as `Clear` leaves it, and the walk that reads it.
    struct Fields {
        gzUncompressErrors read(WStringView data);
        WStringView readFixedHeader(WStringView data);
        gzUncompressErrors readOptionalFields(WStringView& rest);
        gzUncompressErrors readTrailer(WStringView& rest);
        gzUncompressErrors inflateBody(WStringView body);
        bool has(gzArchiveFlags flag) const;

        std::uint8_t id1 = 0;
        std::uint8_t id2 = 0;
        std::uint8_t method = 0;
        gzArchiveFlags flags{};
        std::int32_t modificationTime = 0;
        std::uint8_t extraFlags = 0;
        gzArchiveOS os = gzArchiveOS::gzosUnknown;
        WString extraData;
        WString fileName;
        WString comment;
        std::int16_t headerCrc = 0;
        std::int32_t dataLength = 0;
        std::int32_t dataCrc = 0;
        WString uncompressed;
    };

    Fields fields_;
    platform::ModuleHandle library_ = platform::ModuleHandle::none;
};

}  // namespace orvane

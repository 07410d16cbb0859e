#pragma once

#include "frame/automation/automation_object.h"
#include "network/gzip_codes.h"
#include "platform/handles.h"

namespace orvane {

/// Reads one gzip member (RFC 1952) that is held whole in a byte string: walks its header, inflates
/// the body with zlib and checks the CRC. Which data it takes and which not is fixed by
/// peculiarities that hosts rely on; each is told where it stands in the code.
///
/// The fields tell of the last `UncompressData` that succeeded; after one that gave another code
/// they are as `Clear` leaves them. zlib is a library of its own, looked for on the search path
/// and beside this library; without it everything works but `UncompressData`.
class orvGZipArchive final : public automation::AutomationObject {
public:
    static const automation::ClassTable& table();

    /// Loads zlib. `OS` reads 0 until the first `Clear` or `UncompressData` when the first place to
    /// look had it, and 255 when it hadn't.
    orvGZipArchive();
    ~orvGZipArchive() override;

    WString OSCodeToString(gzArchiveOS code) { return textOf(code); }
    WString UncompressErrorCodeToString(gzUncompressErrors code) { return textOf(code); }

    /// Takes all fields back to 0 and empty, and `OS` to `gzosUnknown`.
    void Clear();

    /// Reads a member into the fields. `data` is no text of one of them. Raises 5 for data that
    /// begins as a member does and is shorter than its fixed header; fields that were read by then
    /// stay. Raises 7 when memory is short and for data longer than a text can be, 453 when the
    /// library called zlib has no `uncompress`.
    gzUncompressErrors UncompressData(WStringView data);

    std::uint8_t ID1() { return id1_; }
    std::uint8_t ID2() { return id2_; }
    std::uint8_t CompressionMethod() { return method_; }
    gzArchiveFlags Flags() { return flags_; }
    /// As it stands: seconds since 1970-01-01 UTC by the format.
    std::int32_t ModificationTime() { return modificationTime_; }
    std::uint8_t ExtraFlags() { return extraFlags_; }
    gzArchiveOS OS() { return os_; }
    const WString& ExtraData() { return extraData_; }  ///< byte string, its length bytes included
    const WString& FileName() { return fileName_; }    ///< byte string
    const WString& Comment() { return comment_; }      ///< byte string
    std::int16_t HeaderCRC16() { return headerCrc_; }
    /// The bytes that zlib wrote; fewer than `UncompressedData` has when NULs follow them.
    std::int32_t DataLen() { return dataLength_; }
    std::int32_t DataCRC32() { return dataCrc_; }
    const WString& UncompressedData() { return uncompressed_; }  ///< byte string

    /// True when zlib can be called now.
    bool IsLibraryAvailable();

private:
    gzUncompressErrors read(WStringView data);
    WStringView readFixedHeader(WStringView data);
    gzUncompressErrors readOptionalFields(WStringView& rest);
    gzUncompressErrors readTrailer(WStringView& rest);
    gzUncompressErrors inflateBody(WStringView body);
    bool has(gzArchiveFlags flag) const;

    std::uint8_t id1_ = 0;
    std::uint8_t id2_ = 0;
    std::uint8_t method_ = 0;
    gzArchiveFlags flags_{};
    std::int32_t modificationTime_ = 0;
    std::uint8_t extraFlags_ = 0;
    gzArchiveOS os_{};
    WString extraData_;
    WString fileName_;
    WString comment_;
    std::int16_t headerCrc_ = 0;
    std::int32_t dataLength_ = 0;
    std::int32_t dataCrc_ = 0;
    WString uncompressed_;
    platform::ModuleHandle library_ = platform::ModuleHandle::none;
};

}  // namespace orvane

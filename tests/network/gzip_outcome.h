#pragma once

#include "gzip_reference.h"

#include "frame/errors.h"
#include "frame/values/codepage.h"
#include "network/orvGZipArchive.h"

#include <ostream>
#include <string_view>

namespace orvane::test {

/// What the class comes to with these bytes, in the terms of the reference. An error other than 5
/// goes through.
inline GzipOutcome outcomeOf(orvGZipArchive& archive, std::string_view bytes) {
    GzipOutcome outcome;
    try {
        outcome.code = static_cast<int>(archive.UncompressData(fromAnsi(bytes)));
    } catch (const RuntimeError& error) {
        if (error.number != error::kInvalidArgument) throw;
        outcome.raises = true;
    }
    outcome.id1 = archive.ID1();
    outcome.id2 = archive.ID2();
    outcome.method = archive.CompressionMethod();
    outcome.flags = static_cast<std::int32_t>(archive.Flags());
    outcome.time = archive.ModificationTime();
    outcome.extraFlags = archive.ExtraFlags();
    outcome.os = static_cast<std::int32_t>(archive.OS());
    outcome.extra = toAnsi(archive.ExtraData());
    outcome.fileName = toAnsi(archive.FileName());
    outcome.comment = toAnsi(archive.Comment());
    outcome.headerCrc = archive.HeaderCRC16();
    outcome.dataLength = archive.DataLen();
    outcome.dataCrc = archive.DataCRC32();
    outcome.data = toAnsi(archive.UncompressedData());
    return outcome;
}

/// For the messages of failed comparisons.
inline std::ostream& operator<<(std::ostream& out, const GzipOutcome& outcome) {
    return out << "code " << outcome.code << (outcome.raises ? ", raises 5" : "") << ", flags "
               << outcome.flags << ", os " << outcome.os << ", header CRC " << outcome.headerCrc
               << ", length " << outcome.dataLength << ", CRC " << outcome.dataCrc << ", "
               << outcome.extra.size() << " + " << outcome.fileName.size() << " + "
               << outcome.comment.size() << " + " << outcome.data.size() << " bytes";
}

}  // namespace orvane::test

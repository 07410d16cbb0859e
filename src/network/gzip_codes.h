#pragma once

#include "frame/automation/table.h"

#include <cstdint>

/// The enumerations of the gzip reader, under the names that hosts know them by.
namespace orvane {

/// The bits of a member's FLG byte.
enum class gzArchiveFlags : std::int32_t {
    gzfText = 1,
    gzfHCRC = 2,
    gzfExtra = 4,
    gzfFileName = 8,
    gzfComment = 16,
    gzfReserved1 = 32,
    gzfReserved2 = 64,
    gzfReserved3 = 128,
};
const automation::EnumTable& enumTable(gzArchiveFlags);

/// The file system or operating system that a member was made on: its OS byte.
enum class gzArchiveOS : std::int32_t {
    gzosFATFilesystem = 0,
    gzosAmiga = 1,
    gzosVMS = 2,
    gzosUNIX = 3,
    gzosVM_CMS = 4,
    gzosAtariTOS = 5,
    HPFSFilesystem = 6,  // without the prefix of the others
    gzosMacintosh = 7,
    gzosZSystem = 8,
    gzosCPM = 9,
    gzosTOPS20 = 10,
    gzosNTFSFileSystem = 11,
    gzosQDOS = 12,
    gzosAcornRISCOS = 13,
    gzosUnknown = 255,
};
const automation::EnumTable& enumTable(gzArchiveOS);

/// How an `UncompressData` ended.
enum class gzUncompressErrors : std::int32_t {
    gzueSuccess = 0,
    gzueNotGZip = 1,
    gzueCRCMismatch = 2,
    gzueInvalidExtraDataLen = 3,
    gzueInvalidFileNameLen = 4,
    gzueInvalidCommentLen = 5,
    gzueInvalidFlags = 6,
    gzueInvalidDataLen = 7,
    gzueLibraryNotAvailable = 8,
};
const automation::EnumTable& enumTable(gzUncompressErrors);

/// The display text of an OS byte; "Unknown" for every value without one.
const char16_t* textOf(gzArchiveOS code);

/// The message of a result. `gzueLibraryNotAvailable` has none of its own and gives the one of
/// every unknown code.
const char16_t* textOf(gzUncompressErrors code);

}  // namespace orvane

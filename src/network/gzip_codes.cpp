#include "network/gzip_codes.h"

#include "frame/automation/library_lifetime.h"

namespace orvane {

using automation::EnumTable;
using automation::permanent;

const EnumTable& enumTable(gzArchiveFlags) {
    static const EnumTable& table = permanent<EnumTable>([] {
        return EnumTable{"gzArchiveFlags",
                         {{"gzfText", 1},
                          {"gzfHCRC", 2},
                          {"gzfExtra", 4},
                          {"gzfFileName", 8},
                          {"gzfComment", 16},
                          {"gzfReserved1", 32},
                          {"gzfReserved2", 64},
                          {"gzfReserved3", 128}}};
    });
    return table;
}

const EnumTable& enumTable(gzArchiveOS) {
    static const EnumTable& table = permanent<EnumTable>([] {
        return EnumTable{"gzArchiveOS",
                         {{"gzosFATFilesystem", 0},
                          {"gzosAmiga", 1},
                          {"gzosVMS", 2},
                          {"gzosUNIX", 3},
                          {"gzosVM_CMS", 4},
                          {"gzosAtariTOS", 5},
                          {"HPFSFilesystem", 6},
                          {"gzosMacintosh", 7},
                          {"gzosZSystem", 8},
                          {"gzosCPM", 9},
                          {"gzosTOPS20", 10},
                          {"gzosNTFSFileSystem", 11},
                          {"gzosQDOS", 12},
                          {"gzosAcornRISCOS", 13},
                          {"gzosUnknown", 255}}};
    });
    return table;
}

const EnumTable& enumTable(gzUncompressErrors) {
    static const EnumTable& table = permanent<EnumTable>([] {
        return EnumTable{"gzUncompressErrors",
                         {{"gzueSuccess", 0},
                          {"gzueNotGZip", 1},
                          {"gzueCRCMismatch", 2},
                          {"gzueInvalidExtraDataLen", 3},
                          {"gzueInvalidFileNameLen", 4},
                          {"gzueInvalidCommentLen", 5},
                          {"gzueInvalidFlags", 6},
                          {"gzueInvalidDataLen", 7},
                          {"gzueLibraryNotAvailable", 8}}};
    });
    return table;
}

const char16_t* textOf(gzArchiveOS code) {
    switch (code) {
    case gzArchiveOS::gzosFATFilesystem:
        return u"FAT filesystem (MS-DOS, OS/2, NT/Win32)";
    case gzArchiveOS::gzosAmiga:
        return u"Amiga";
    case gzArchiveOS::gzosVMS:
        return u"VMS (or OpenVMS)";
    case gzArchiveOS::gzosUNIX:
        return u"Unix";
    case gzArchiveOS::gzosVM_CMS:
        return u"VM/CMS";
    case gzArchiveOS::gzosAtariTOS:
        return u"Atari TOS";
    case gzArchiveOS::HPFSFilesystem:
        return u"HPFS filesystem (OS/2, NT)";
    case gzArchiveOS::gzosMacintosh:
        return u"Macintosh";
    case gzArchiveOS::gzosZSystem:
        return u"Z-System";
    case gzArchiveOS::gzosCPM:
        return u"CP/M";
    case gzArchiveOS::gzosTOPS20:
        return u"TOPS-20";
    case gzArchiveOS::gzosNTFSFileSystem:
        return u"NTFS filesystem (NT)";
    case gzArchiveOS::gzosQDOS:
        return u"QDOS";
    case gzArchiveOS::gzosAcornRISCOS:
        return u"Acorn RISCOS";
    case gzArchiveOS::gzosUnknown:
        break;
    }
    return u"Unknown";
}

const char16_t* textOf(gzUncompressErrors code) {
    switch (code) {
    case gzUncompressErrors::gzueSuccess:
        return u"Операция выполнена успешно";
    case gzUncompressErrors::gzueNotGZip:
        return u"Данные не являются GZip архивом";
    case gzUncompressErrors::gzueCRCMismatch:
        return u"CRC32 данных не совпадают с CRC32, указанным в архиве";
    case gzUncompressErrors::gzueInvalidExtraDataLen:
        return u"Неверное значение длины дополнительных данных";
    case gzUncompressErrors::gzueInvalidFileNameLen:
        return u"Неверное значение длины имени файла";
    case gzUncompressErrors::gzueInvalidCommentLen:
        return u"Неверное значение длины комментария";
    case gzUncompressErrors::gzueInvalidFlags:
        return u"В архиве используются зарезервированные флаги";
    case gzUncompressErrors::gzueInvalidDataLen:
        return u"Неверное значение длины даных";
    case gzUncompressErrors::gzueLibraryNotAvailable:
        break;
    }
    return u"Неизвестная ошибка";
}

}  // namespace orvane

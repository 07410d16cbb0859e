#include "frame/automation/library_lifetime.h"
#include "frame/automation/table.h"
#include "main/orvMain.h"
#include "network/HTTPFormBuilder.h"
#include "network/IHTTPRequestCallback.h"
#include "network/ProxySettings.h"
#include "network/orvGZipArchive.h"
#include "network/orvHTTPRequest.h"
#include "pictures/PictureInfo.h"
#include "settings/orvAutorunSupport.h"
#include "settings/orvOrvaneSettings.h"
#include "settings/orvRegistry.h"
#include "utilities/CommandLineParser.h"
#include "utilities/orvAlone.h"
#include "utilities/orvBenchMark.h"
#include "utilities/orvBenchMarkHP.h"
#include "utilities/orvSort.h"
#include "utilities/orvStringBuffer.h"

namespace orvane::automation {

// The identity that hosts know the library by, and its classes in type-library order.
const LibraryTable& libraryTable() {
    static const LibraryTable& table = permanent<LibraryTable>([] {
        return LibraryTable{
            {0xE794EBDB, 0xDBCD, 0x4922, {0x8D, 0xAA, 0x1A, 0xED, 0x2F, 0xC7, 0x82, 0x44}},
            "OrvBase0301",
            1,
            5,
            u"Orvane - Библиотека общих функций 3.01",
            {&orvMain::table(), &orvAlone::table(), &orvBenchMark::table(), &orvRegistry::table(),
             &orvOrvaneSettings::table(), &PictureInfo::table(), &orvBenchMarkHP::table(),
             &CommandLineParser::table(), &IHTTPRequestCallback::table(), &orvHTTPRequest::table(),
             &orvAutorunSupport::table(), &HTTPFormBuilder::table(), &ProxySettings::table(),
             &orvStringBuffer::table(), &orvGZipArchive::table(), &orvSort::table()},
            {&enumTable(orvPictureTypeEx{}), &enumTable(AddAutoCompleteFlags{}),
             &enumTable(RegistryRoot_Const{}), &enumTable(RegistryType_Const{}),
             &enumTable(htprExecuteError{}), &enumTable(htfbTransferEncoding{}),
             &enumTable(psAccessType{}), &enumTable(gzArchiveFlags{}), &enumTable(gzArchiveOS{}),
             &enumTable(gzUncompressErrors{})},
            {3, 1, 0, 251},
            u"3.01.0251",
            "OrvBase0301"};
    });
    return table;
}

}  // namespace orvane::automation

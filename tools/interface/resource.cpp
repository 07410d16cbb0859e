#include "resource.h"

#include "support/utf8.h"

namespace orvane::interface {

namespace {

std::string valueText(const char* name, const std::string& value) {
    return std::string("            VALUE \"") + name + "\", \"" + value + "\"\n";
}

}  // namespace

std::string resourceText(const automation::LibraryTable& library, const std::string& typeLibrary,
                         const std::string& fileName) {
    std::string numbers;
    for (const std::uint16_t part : library.fileVersion) {
        numbers += (numbers.empty() ? "" : ", ") + std::to_string(part);
    }
    const std::string version = encodeUtf8(library.versionText);
    const std::string title = fileName.substr(0, fileName.rfind('.'));
    // 0x2 in FILETYPE is a library, 0x4 in FILEOS 32-bit Windows; 1200 is UTF-16, 0x419 Russian.
    return "1 TYPELIB \"" + typeLibrary + "\"\n\n1 VERSIONINFO\nFILEVERSION " + numbers +
           "\nPRODUCTVERSION " + numbers +
           "\nFILEOS 0x4\nFILETYPE 0x2\nBEGIN\n    BLOCK \"StringFileInfo\"\n    BEGIN\n"
           "        BLOCK \"041904B0\"\n        BEGIN\n" +
           valueText("FileDescription", encodeUtf8(library.help)) +
           valueText("FileVersion", version) + valueText("InternalName", title) +
           valueText("OriginalFilename", fileName) + valueText("ProductName", library.name) +
           valueText("ProductVersion", version) +
           "        END\n    END\n    BLOCK \"VarFileInfo\"\n    BEGIN\n"
           "        VALUE \"Translation\", 0x419, 1200\n    END\nEND\n";
}

}  // namespace orvane::interface

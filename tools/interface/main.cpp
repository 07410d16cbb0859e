// Prints what is derived from the class tables of a library; the build runs it.
//
//   orvane-interface idl OUT          the interface definition for widl
//   orvane-interface system-idl OUT   the part of the system's type library that it refers to
//   orvane-interface header OUT       the C++ header for hosts
//   orvane-interface snapshot OUT     the binary interface as text, for comparison
//   orvane-interface flags FILE       sets the instancing flags in a compiled type library
//   orvane-interface resource OUT TYPELIB NAME   the resource script of the library's file NAME

#include "header.h"
#include "idl.h"
#include "instancing_flags.h"
#include "resource.h"
#include "snapshot.h"

#include <fstream>
#include <iostream>
#include <iterator>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace {

using namespace orvane;

// A file that would come out the same stays as it is: what is built from it needn't be built again.
void writeFile(const std::string& path, const std::string& content) {
    if (std::ifstream former(path, std::ios::binary); former) {
        const std::string there{std::istreambuf_iterator<char>(former), {}};
        if (there == content) return;
    }
    std::ofstream file(path, std::ios::binary | std::ios::trunc);
    file.write(content.data(), static_cast<std::streamsize>(content.size()));
    if (!file.flush()) throw std::runtime_error("can't write " + path);
}

void setFlags(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    if (!file) throw std::runtime_error("can't read " + path);
    std::vector<char> content{std::istreambuf_iterator<char>(file), {}};
    file.close();
    std::vector<std::uint8_t> bytes(content.begin(), content.end());
    interface::setInstancingFlags(bytes, automation::libraryTable());
    writeFile(path, std::string(bytes.begin(), bytes.end()));
}

bool carryOut(std::string_view command, const std::string& path) {
    const automation::LibraryTable& library = automation::libraryTable();
    if (command == "idl") writeFile(path, interface::idlText(library));
    else if (command == "system-idl") writeFile(path, interface::systemIdlText());
    else if (command == "header") writeFile(path, interface::headerText(library));
    else if (command == "snapshot") writeFile(path, interface::snapshotText(library));
    else if (command == "flags") setFlags(path);
    else return false;
    return true;
}

}  // namespace

int main(int count, char** arguments) {
    try {
        if (count == 3 && carryOut(arguments[1], arguments[2])) return 0;
        if (count == 5 && std::string_view(arguments[1]) == "resource") {
            writeFile(arguments[2], interface::resourceText(automation::libraryTable(),
                                                            arguments[3], arguments[4]));
            return 0;
        }
    } catch (const std::exception& failure) {
        std::cerr << "orvane-interface: " << failure.what() << "\n";
        return 1;
    }
    std::cerr << "usage: orvane-interface idl|system-idl|header|snapshot OUT | flags FILE |\n"
                 "                        resource OUT TYPELIB NAME\n";
    return 2;
}

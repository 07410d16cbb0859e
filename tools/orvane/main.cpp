#include "commands.h"
#include "library.h"
#include "system.h"
#include "utf8.h"

#include <exception>
#include <new>
#include <string>
#include <vector>

namespace orvane::tool {

namespace {

constexpr const char* kUsage = "usage: orvane args [WORDS...]\n"
                               "       orvane describe [CLASS]\n"
                               "       orvane picture info [--json] FILES...\n"
                               "       orvane picture convert IN OUT\n"
                               "       orvane picture show [-o FILE] FILES...\n"
                               "       orvane gzip info [--json] FILES...\n"
                               "       orvane gzip cat FILE\n"
                               "       orvane register [FILE]\n"
                               "       orvane unregister [FILE]\n"
                               "       orvane registry list [--json] KEY\n"
                               "       orvane registry get [--json] KEY [NAME]\n"
                               "       orvane registry set [--type TYPE] KEY NAME VALUE...\n"
                               "       orvane registry delete [--recursive] KEY [NAME]\n"
                               "       orvane registry export [--utf8] KEY [FILE]\n"
                               "       orvane registry import FILE\n"
                               "       orvane --help\n"
                               "       orvane --version\n";

constexpr const char* kHelp =
    "\n"
    "args             what the library makes of this command line: the number of\n"
    "                 parameters, the program (-1) and each parameter from 0\n"
    "describe         the classes of the library, or the members of one of them;\n"
    "                 CLASS may be the ProgID of any registered component\n"
    "picture info     type, size and depth of each picture, or its error; with\n"
    "                 --json one object a line: file, type, typeName, width, height,\n"
    "                 bpp, or file and error (number, description)\n"
    "picture convert  writes a picture as .bmp, .ppm or .png, by the extension of OUT\n"
    "picture show     a page of small pictures with their names, types, sizes and\n"
    "                 depths, as the PNG file contact-sheet.png or FILE\n"
    "gzip info        sizes and header of each gzip file, or the code and text with\n"
    "                 which the library refuses it; --json as above\n"
    "gzip cat         the data of a gzip file\n"
    "register         makes the classes of a component, without FILE the library's\n"
    "                 own, known to all programs that create objects by name; on\n"
    "                 Linux for the whole machine as root, else for you\n"
    "unregister       takes that back\n"
    "registry list    sub-keys in brackets, then name, type and data of each value;\n"
    "                 with --json an object a line: key, or name, type, value\n"
    "registry get     the data of a value alone; without NAME, or with @ or \"\", of\n"
    "                 the key's default value\n"
    "registry set     writes a value and makes its key; TYPE is string (the usual\n"
    "                 one), expand, multi (each VALUE a text), dword, qword, binary\n"
    "                 or none (hexadecimal digits), or a name like REG_SZ\n"
    "registry delete  deletes a value, or a key; --recursive with its sub-keys\n"
    "registry export  writes a key and all below it as a registry file (.reg), in\n"
    "                 UTF-16 as Windows does; with --utf8 in UTF-8\n"
    "registry import  does what a registry file says, all of it or nothing; on\n"
    "                 Windows a failure of the registry itself can stop midway\n"
    "\n"
    "KEY is a path like HKCU\\Software\\Example; the roots are HKCU, HKLM, HKCR,\n"
    "HKU and HKCC, or their long names. A shell wants it in quotes. FILE may be -\n"
    "for the standard input or output.\n"
    "\n"
    "Exit status: 0, 1 when something failed, 2 for a wrong command line. When nobody\n"
    "reads the output any more the tool ends quietly (on Linux by SIGPIPE, for a\n"
    "shell 141; on Windows with 0).\n";

void runVersion() {
    Library library;
    writeToOutput("orvane, library " + library.version() + "\n");
}

int runPicture(Words words) {
    if (words.empty()) throw UsageError("picture: no command");
    if (words[0] == "info") return runPictureInfo(words.subspan(1));
    if (words[0] == "convert") return runPictureConvert(words.subspan(1));
    if (words[0] == "show") return runPictureShow(words.subspan(1));
    throw UsageError("picture: unknown command " + words[0]);
}

int runGzip(Words words) {
    if (words.empty()) throw UsageError("gzip: no command");
    if (words[0] == "info") return runGzipInfo(words.subspan(1));
    if (words[0] == "cat") return runGzipCat(words.subspan(1));
    throw UsageError("gzip: unknown command " + words[0]);
}

int run(Words words) {
    if (words.empty()) throw UsageError("no command");
    if (words[0] == "args") return runArgs();
    if (words[0] == "describe") return runDescribe(words.subspan(1));
    if (words[0] == "picture") return runPicture(words.subspan(1));
    if (words[0] == "gzip") return runGzip(words.subspan(1));
    if (words[0] == "register") return runRegister(words.subspan(1));
    if (words[0] == "unregister") return runUnregister(words.subspan(1));
    if (words[0] == "registry") return runRegistry(words.subspan(1));
    const bool isHelp = words[0] == "--help" || words[0] == "-h";
    if (!isHelp && words[0] != "--version") throw UsageError("unknown command " + words[0]);
    if (words.size() > 1) throw UsageError(words[0] + " stands alone");
    if (isHelp) writeToOutput(std::string(kUsage) + kHelp);
    else runVersion();
    return kSuccess;
}

void complain(const std::string& text) {
    writeToErrors("orvane: " + printable(text) + "\n");
}

int guardedRun(int argc, char** argv) {
    try {
        prepareProcess();
        const std::vector<std::string> words = commandWords(argc, argv);
        return run(words);
    } catch (const ReaderGone&) {
        endWithoutReader();
    } catch (const UsageError& error) {
        complain(error.what());
        writeToErrors(kUsage);
        return kBadUsage;
    } catch (const LibraryError& error) {
        complain(error.text());
    } catch (const std::bad_alloc&) {
        complain("out of memory");
    } catch (const std::exception& error) {
        complain(error.what());
    }
    return kFailed;
}

}  // namespace

}  // namespace orvane::tool

int main(int argc, char** argv) {
    return orvane::tool::guardedRun(argc, argv);
}

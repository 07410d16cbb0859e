#include "commands.h"
#include "help.h"
#include "library.h"
#include "system.h"
#include "utf8.h"

#include <exception>
#include <new>
#include <stdexcept>
#include <string>
#include <vector>

namespace orvane::tool {

namespace {

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
    if (const auto text = requestedHelp(words)) {
        writeToOutput(*text);
        return kSuccess;
    }
    if (words[0] == "args") return runArgs();
    if (words[0] == "describe") return runDescribe(words.subspan(1));
    if (words[0] == "picture") return runPicture(words.subspan(1));
    if (words[0] == "gzip") return runGzip(words.subspan(1));
    if (words[0] == "register") return runRegister(words.subspan(1));
    if (words[0] == "unregister") return runUnregister(words.subspan(1));
    if (words[0] == "registry") return runRegistry(words.subspan(1));
    const bool isHelp = asksForHelp(words[0]);
    if (!isHelp && words[0] != "--version") throw UsageError("unknown command " + words[0]);
    if (words.size() > 1) throw UsageError(words[0] + " stands alone");
    if (isHelp) writeToOutput(help());
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
        writeToErrors(usage());
        return kBadUsage;
    } catch (const LibraryError& error) {
        complain(error.text());
    } catch (const std::bad_alloc&) {
        complain("out of memory");
    } catch (const std::length_error&) {
        complain("out of memory");  // a text that has no room in the address space
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

#include "commands.h"
#include "json.h"
#include "library.h"
#include "options.h"
#include "progress.h"
#include "system.h"
#include "utf8.h"

namespace orvane::tool {

namespace {

std::string factsText(const PictureFacts& facts) {
    std::string text = facts.typeName;
    // Metafiles, icons and cursors have no size and depth of their own.
    if (facts.width >= 0 && facts.height >= 0) {
        text += ", " + std::to_string(facts.width) + " x " + std::to_string(facts.height);
    }
    if (facts.bitsPerPixel >= 0) {
        text += ", " + std::to_string(facts.bitsPerPixel) +
                (facts.bitsPerPixel == 1 ? " bit" : " bits") + " per pixel";
    }
    return text;
}

std::string factsJson(const std::string& file, const PictureFacts& facts) {
    return JsonObject()
        .text("file", file)
        .number("type", facts.type)
        .text("typeName", facts.typeName)
        .number("width", facts.width)
        .number("height", facts.height)
        .number("bpp", facts.bitsPerPixel)
        .done();
}

std::string errorJson(const std::string& file, const LibraryError& error) {
    const JsonObject failure =
        JsonObject().number("number", error.number).text("description", error.description);
    return JsonObject().text("file", file).object("error", failure).done();
}

/// The line about one file; `failed` is set when it can't be read.
std::string lineAbout(Library& library, const std::string& file, bool json, bool& failed) {
    try {
        const PictureFacts facts = library.loadPicture(file).facts;
        return json ? factsJson(file, facts) : printable(file + ": " + factsText(facts));
    } catch (const LibraryError& error) {
        failed = true;
        return json ? errorJson(file, error) : printable(file + ": " + error.text());
    }
}

}  // namespace

int runPictureInfo(Words words) {
    const bool json = takeOptions(words, "--json");
    if (words.empty()) throw UsageError("picture info: no files");
    Library library;
    Progress progress(words.size());
    bool failed = false;
    for (std::size_t i = 0; i < words.size(); ++i) {
        progress.show(i);
        const std::string line = lineAbout(library, words[i], json, failed);
        progress.makeWay();
        writeToOutput(line + "\n");
    }
    return failed ? kFailed : kSuccess;
}

}  // namespace orvane::tool

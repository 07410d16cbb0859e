#include "commands.h"
#include "json.h"
#include "library.h"
#include "options.h"
#include "progress.h"
#include "system.h"
#include "utf8.h"

#include <cstdint>
#include <cstdio>
#include <new>
#include <optional>

namespace orvane::tool {

namespace {

constexpr const char* kOutOfMemory = "out of memory";

std::string hexadecimal(std::int32_t number, int digits) {
    char text[16];
    std::snprintf(text, sizeof text, "0x%0*X", digits, static_cast<unsigned>(number));
    return text;
}

/// A number with its text, which is what the library says of a file: "code 0 ...", "error 5 ...".
std::string saying(const char* kind, std::int32_t number, const std::string& text) {
    return kind + (" " + std::to_string(number)) + " " + text;
}

std::string factsText(const GzipFacts& facts, std::uint64_t size) {
    std::string text =
        saying("code", facts.code, facts.message) + ", " + std::to_string(facts.dataSize) +
        " bytes from " + std::to_string(size) + ", CRC-32 " + hexadecimal(facts.dataCrc, 8) +
        ", method " + std::to_string(facts.method) + ", flags " + hexadecimal(facts.flags, 2) +
        ", extra flags " + hexadecimal(facts.extraFlags, 2) + ", time " +
        std::to_string(facts.time) + ", OS " + std::to_string(facts.os) + " " + facts.osName;
    const auto has = [&facts](int flag) { return (facts.flags & flag) != 0; };
    if (has(4)) text += ", extra data of " + std::to_string(facts.extra.size()) + " bytes";
    if (has(8)) text += ", name " + facts.fileName;
    if (has(16)) text += ", comment " + facts.comment;
    if (has(2)) text += ", header CRC " + hexadecimal(facts.headerCrc & 0xFFFF, 4);
    return text;
}

std::string factsJson(const std::string& file, const GzipFacts& facts, std::uint64_t size) {
    return JsonObject()
        .text("file", file)
        .number("size", size)
        .object("verdict",
                JsonObject().number("code", facts.code).text("description", facts.message))
        .number("dataSize", facts.dataSize)
        .number("compressionMethod", facts.method)
        .number("flags", facts.flags)
        .number("modificationTime", facts.time)
        .number("extraFlags", facts.extraFlags)
        .number("os", facts.os)
        .text("osName", facts.osName)
        .number("extraSize", facts.extra.size())
        .text("fileName", facts.fileName)
        .text("comment", facts.comment)
        .number("headerCRC16", facts.headerCrc)
        .number("dataLen", facts.dataLength)
        .number("dataCRC32", facts.dataCrc)
        .done();
}

/// Why a file has no data: the library's result, the error that it raised, or the system's reason.
struct Refusal {
    const char* kind;  ///< "code", "error", or null when the file can't be read
    std::int32_t number = 0;
    std::string description;

    std::string text() const {
        return kind == nullptr ? description : saying(kind, number, description);
    }
    JsonObject json() const {
        JsonObject object;
        if (kind != nullptr) object.number(kind, number);
        return object.text("description", description);
    }
};

struct Reading {
    std::optional<std::uint64_t> size;  ///< of the file, where it is known
    GzipFacts facts;
    std::optional<Refusal> refusal;
};

Reading read(Library& library, const std::string& file, GzipPart wanted) {
    Reading reading;
    try {
        const std::string bytes = readFile(file, kLongestGzip);
        reading.size = bytes.size();
        reading.facts = library.uncompress(bytes, wanted);
        const GzipFacts& facts = reading.facts;
        if (facts.code != 0) reading.refusal = Refusal{"code", facts.code, facts.message};
    } catch (const LibraryError& error) {
        reading.refusal = Refusal{"error", error.number, error.description};
    } catch (const FileTooLong& whole) {
        if (whole.size != 0) reading.size = whole.size;
        reading.refusal = Refusal{nullptr, 0, kOutOfMemory};
    } catch (const std::bad_alloc&) {
        reading.refusal = Refusal{nullptr, 0, kOutOfMemory};
    } catch (const Failure& failure) {
        // The reason stands behind the file's name.
        reading.refusal = Refusal{nullptr, 0, std::string(failure.what()).substr(file.size() + 2)};
    }
    return reading;
}

std::string refusalText(const Reading& reading) {
    std::string text = reading.refusal->text();
    if (reading.size) text += ", " + std::to_string(*reading.size) + " bytes";
    return text;
}

std::string refusalJson(const std::string& file, const Reading& reading) {
    JsonObject object;
    object.text("file", file);
    if (reading.size) object.number("size", *reading.size);
    return object.object("error", reading.refusal->json()).done();
}

std::string lineAbout(const std::string& file, const Reading& reading, bool json) {
    if (json) {
        return reading.refusal ? refusalJson(file, reading)
                               : factsJson(file, reading.facts, *reading.size);
    }
    return printable(
        file + ": " +
        (reading.refusal ? refusalText(reading) : factsText(reading.facts, *reading.size)));
}

}  // namespace

int runGzipInfo(Words words) {
    const bool json = takeOptions(words, "--json");
    if (words.empty()) throw UsageError("gzip info: no files");
    Library library;
    Progress progress(words.size());
    bool failed = false;
    for (std::size_t i = 0; i < words.size(); ++i) {
        progress.show(i);
        const Reading reading = read(library, words[i], GzipPart::header);
        failed = failed || reading.refusal;
        progress.makeWay();
        writeToOutput(lineAbout(words[i], reading, json) + "\n");
    }
    return failed ? kFailed : kSuccess;
}

int runGzipCat(Words words) {
    takeOptions(words, {});
    if (words.size() != 1) throw UsageError("gzip cat: one file");
    Library library;
    const Reading reading = read(library, words[0], GzipPart::all);
    if (reading.refusal) throw Failure(words[0] + ": " + reading.refusal->text());
    writeToOutput(reading.facts.data);
    return kSuccess;
}

}  // namespace orvane::tool

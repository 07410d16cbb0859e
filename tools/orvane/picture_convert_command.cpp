#include "bmp_to_ppm.h"
#include "commands.h"
#include "library.h"
#include "system.h"
#include "utf8.h"

#include <algorithm>
#include <cstdint>

namespace orvane::tool {

namespace {

enum class Format { bmp, ppm };

bool endsWith(const std::string& name, std::string_view extension) {
    const auto lower = [](char letter) {
        return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter + 32) : letter;
    };
    return name.size() > extension.size() &&
           std::equal(extension.rbegin(), extension.rend(), name.rbegin(),
                      [&](char wanted, char given) { return wanted == lower(given); });
}

Format formatOf(const std::string& name) {
    if (endsWith(name, ".bmp")) return Format::bmp;
    if (endsWith(name, ".ppm")) return Format::ppm;
    throw UsageError("picture convert: OUT has to end in .bmp or .ppm");
}

}  // namespace

int runPictureConvert(Words words) {
    if (!words.empty() && words.front() == "--") words = words.subspan(1);
    if (words.size() != 2) throw UsageError("picture convert: needs IN and OUT");
    const std::string& in = words[0];
    const std::string& out = words[1];
    const Format format = formatOf(out);
    Library library;
    std::vector<std::uint8_t> content;
    try {
        content = bmpOf(library.loadPicture(in));
        if (format == Format::ppm) content = ppmFromBmp(content);
    } catch (const LibraryError& error) {
        throw Failure(in + ": " + error.text());
    } catch (const Failure& failure) {
        throw Failure(in + ": " + failure.what());
    }
    replaceFile(out, content);
    return kSuccess;
}

}  // namespace orvane::tool

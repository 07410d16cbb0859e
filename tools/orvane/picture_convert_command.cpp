#include "bmp_to_ppm.h"
#include "commands.h"
#include "extension.h"
#include "library.h"
#include "png_writer.h"
#include "system.h"
#include "utf8.h"

#include <cstdint>

namespace orvane::tool {

namespace {

enum class Format { bmp, ppm, png };

Format formatOf(const std::string& name) {
    if (hasExtension(name, ".bmp")) return Format::bmp;
    if (hasExtension(name, ".ppm")) return Format::ppm;
    if (hasExtension(name, ".png")) return Format::png;
    throw UsageError("picture convert: OUT has to end in .bmp, .ppm or .png");
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
        if (format == Format::png) content = pngOf(rgbFromBmp(content));
    } catch (const LibraryError& error) {
        throw Failure(in + ": " + error.text());
    } catch (const Failure& failure) {
        throw Failure(in + ": " + failure.what());
    }
    replaceFile(out, content);
    return kSuccess;
}

}  // namespace orvane::tool

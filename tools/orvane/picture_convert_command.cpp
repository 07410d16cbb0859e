#include "bmp_to_ppm.h"
#include "bmp_writer.h"
#include "commands.h"
#include "drawn_picture.h"
#include "extension.h"
#include "library.h"
#include "png_writer.h"
#include "system.h"
#include "utf8.h"

#include <cstdint>
#include <optional>

namespace orvane::tool {

namespace {

enum class Format { bmp, ppm, png };

Format formatOf(const std::string& name) {
    if (hasExtension(name, ".bmp")) return Format::bmp;
    if (hasExtension(name, ".ppm")) return Format::ppm;
    if (hasExtension(name, ".png")) return Format::png;
    throw UsageError("picture convert: OUT has to end in .bmp, .ppm or .png");
}

/// What lies behind the transparent parts of a picture that is drawn: the colour of a form, as
/// behind those of all other pictures.
constexpr Rgb kButtonFace{0xF0, 0xF0, 0xF0};

/// The picture as a BMP file: a bitmap's own pixels, anything else as the system draws it.
std::vector<std::uint8_t> bmpOfAny(Library& library, const LoadedPicture& loaded) {
    if (loaded.isBitmap()) return bmpOf(loaded);
    const std::optional<RgbImage> drawn = drawnPicture(library, loaded, kButtonFace);
    if (!drawn) throw Failure(loaded.facts.typeName + ": can't be drawn on this system");
    return bmpFromRgb(*drawn);
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
        content = bmpOfAny(library, library.loadPicture(in));
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

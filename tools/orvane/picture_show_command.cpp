#include "bmp_to_ppm.h"
#include "commands.h"
#include "contact_sheet.h"
#include "drawn_picture.h"
#include "extension.h"
#include "library.h"
#include "png_writer.h"
#include "progress.h"
#include "system.h"

#include <array>
#include <optional>
#include <utility>

namespace orvane::tool {

namespace {

/// The words of a caption for `orvPictureTypeEx`, which counts from 0.
std::string shortType(std::int32_t type) {
    constexpr std::array kTypes = {"",    "BMP", "JPEG", "GIF", "WMF", "EMF", "ICO",
                                   "CUR", "PNG", "PSD",  "PCX", "TGA", "TIFF"};
    const auto index = static_cast<std::size_t>(type);
    return index < kTypes.size() ? kTypes[index] : "unknown";
}

std::string caption(const PictureFacts& facts) {
    std::string text = shortType(facts.type);
    if (facts.width >= 0 && facts.height >= 0) {
        text += " " + std::to_string(facts.width) + "\u00D7" + std::to_string(facts.height);
    }
    if (facts.bitsPerPixel >= 0) text += " " + std::to_string(facts.bitsPerPixel) + "bit";
    return text;
}

/// The last part of a name, however folders are parted here.
std::string fileNameOf(const std::string& path) {
    const std::size_t end = path.find_last_of("/\\");
    return end == std::string::npos || end + 1 == path.size() ? path : path.substr(end + 1);
}

/// The thumbnail of whatever the system can draw.
std::optional<RgbImage> thumbnail(Library& library, const LoadedPicture& loaded) {
    if (loaded.isBitmap()) return thumbnailOf(rgbFromBmp(bmpOf(loaded)));
    const std::optional<RgbImage> drawn = drawnPicture(library, loaded, kThumbnailGround);
    if (!drawn) return {};
    return thumbnailOf(*drawn);
}

SheetEntry entryOf(Library& library, const std::string& file) {
    SheetEntry entry;
    entry.name = fileNameOf(file);
    try {
        const LoadedPicture loaded = library.loadPicture(file);
        entry.facts = caption(loaded.facts);
        entry.image = thumbnail(library, loaded);
    } catch (const LibraryError& error) {
        entry.broken = true;
        entry.facts = "error " + std::to_string(error.number);
    } catch (const Failure& failure) {
        entry.broken = true;
        entry.facts = failure.what();
    }
    return entry;
}

struct Options {
    std::string out = "contact-sheet.png";
    Words files;
};

Options optionsOf(Words words) {
    Options options;
    while (!words.empty() && words.front().starts_with("-") && words.front() != "-") {
        const std::string& option = words.front();
        words = words.subspan(1);
        if (option == "--") break;
        if (option != "-o") throw UsageError("unknown option " + option);
        if (words.empty()) throw UsageError("picture show: -o needs a file");
        options.out = words.front();
        words = words.subspan(1);
    }
    if (words.empty()) throw UsageError("picture show: no files");
    options.files = words;
    return options;
}

}  // namespace

int runPictureShow(Words words) {
    const Options options = optionsOf(words);
    if (!hasExtension(options.out, ".png")) {
        throw UsageError("picture show: FILE has to end in .png");
    }
    Library library;
    std::vector<SheetEntry> entries;
    bool failed = false;
    {
        Progress progress(options.files.size());
        for (std::size_t i = 0; i < options.files.size(); ++i) {
            progress.show(i);
            entries.push_back(entryOf(library, options.files[i]));
            failed = failed || entries.back().broken;
        }
    }
    replaceFile(options.out, pngOf(contactSheet(entries)));
    writeToOutput(options.out + "\n");
    return failed ? kFailed : kSuccess;
}

}  // namespace orvane::tool

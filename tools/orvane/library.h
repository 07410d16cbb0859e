#pragma once

#include "gzip_reader.h"
#include "type_library.h"

#include "orvane/host.h"

#include <cstdint>
#include <string>
#include <vector>

namespace orvane::tool {

/// A run-time error that the library raised. The description is UTF-8.
struct LibraryError : std::exception {
    LibraryError(std::int32_t errorNumber, std::string errorText)
        : number(errorNumber), description(std::move(errorText)) {}

    const char* what() const noexcept override { return description.c_str(); }
    /// "error 53 File not found".
    std::string text() const { return "error " + std::to_string(number) + " " + description; }

    std::int32_t number;
    std::string description;
};

/// What the library tells about a picture. Width, height (pixels) and depth of metafiles, icons and
/// cursors are -1.
struct PictureFacts {
    std::int32_t type = 0;  ///< orvPictureTypeEx
    std::string typeName;
    std::int32_t width = 0;
    std::int32_t height = 0;
    std::int32_t bitsPerPixel = 0;
};

/// A picture and what is known about it. It has to go before its library.
struct LoadedPicture {
    PictureFacts facts;
    host::Pointer<IPictureDisp> picture;

    bool isBitmap() const;
    /// An icon or a cursor.
    bool isIcon() const;
};

/// The library as the tool's commands use it: the one beside the program, or the file that the
/// environment variable ORVANE_LIBRARY names. Texts are UTF-8. What the library raises comes out as
/// LibraryError; a library that can't be loaded is a host::LoadError.
class Library {
public:
    /// The program's name and the parameters, as `orvMain.CommandLine` has them.
    std::vector<std::string> commandLine();

    LoadedPicture loadPicture(const std::string& file);

    /// What the gzip reader makes of a file's bytes.
    GzipFacts uncompress(std::string_view bytes, GzipPart wanted);

    /// The classes, and the members of the one with this name.
    LibraryFacts describe(const std::string& classWithMembers);

    /// The class that is registered under a ProgID, with its members, and its library's name; of an
    /// object that tells no types, a Failure.
    LibraryFacts describeRegistered(const std::string& progId);

    /// The version text of the library's file.
    std::string version();

    /// For what only the platform's own calls do.
    host::Library& host() { return host_; }

private:
    host::Library host_;
};

/// The picture as a BMP file. Throws Failure for a picture that is no bitmap.
std::vector<std::uint8_t> bmpOf(const LoadedPicture& loaded);

/// An icon or a cursor as the file that the library makes of it. Throws Failure for other pictures.
std::vector<std::uint8_t> iconOf(const LoadedPicture& loaded);

}  // namespace orvane::tool

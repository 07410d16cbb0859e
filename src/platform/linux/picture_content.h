#pragma once

#include "platform/linux/handle_table.h"
#include "platform/oleaut32.h"

#include <cstdint>
#include <span>
#include <vector>

namespace orvane::platform {

enum class MetafileHandle : std::uint32_t { none = 0 };

/// A metafile: the bytes of its file.
struct Metafile {
    using Handle = MetafileHandle;
    static constexpr HandleKind kKind = HandleKind::metafile;

    std::vector<std::uint8_t> bytes;
};

/// The run-time error numbers of the host's picture loader.
inline constexpr std::int32_t kRuntimeOutOfMemory = 7;
inline constexpr std::int32_t kRuntimeFileNotFound = 53;
inline constexpr std::int32_t kRuntimeFileAccess = 75;
inline constexpr std::int32_t kRuntimeInvalidPicture = 481;

/// What a picture object shows: one handle, which it may own.
struct PictureContent {
    std::int16_t type = 0;     ///< picture type of the binary interface, 0 for none
    std::uint32_t handle = 0;  ///< of a bitmap, icon or metafile
    bool own = false;
    std::int32_t width = 0;  ///< hundredths of a millimetre
    std::int32_t height = 0;
};

/// Hundredths of a millimetre for pixels at 96 dots an inch, rounded.
std::int32_t himetricFromPixels(std::int32_t pixels);

/// What `description` describes. False with the last error 6 when the handle is none of its type,
/// with 87 for a type that there is not. The handle becomes `content`'s own if `own`.
bool contentFromDescription(const PictureDescription& description, bool own,
                            PictureContent& content);

/// Whether a file that starts so is of a format that the decoders know; true when they can't be
/// loaded, so that `contentFromFile` tells why.
bool isKnownPicture(std::span<const std::uint8_t> start);

/// Decodes a picture file with the module of decoders; `content` owns what comes back. Gives 0, or
/// the run-time error 7 or 481.
std::int32_t contentFromFile(std::span<const std::uint8_t> file, PictureContent& content);

/// Deletes the handle if it is owned and makes the content none.
void releaseContent(PictureContent& content);

}  // namespace orvane::platform

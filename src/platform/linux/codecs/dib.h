#pragma once

#include "platform/linux/codecs/channels.h"
#include "platform/linux/codecs/codecs.h"
#include "platform/linux/codecs/reader.h"

#include <cstddef>
#include <cstdint>
#include <span>

namespace orvane::codecs {

/// How the pixels behind a DIB header are stored.
enum class DibCompression { kNone, kRle4, kRle8 };

/// What a device-independent bitmap's header says, checked for sense.
///
/// Layouts: BITMAPCOREHEADER (12 bytes), OS/2 2.x (16 to 64), BITMAPINFOHEADER (40) and its
/// versions with masks (52, 56), BITMAPV4HEADER (108), BITMAPV5HEADER (124).
struct DibHeader {
    uint32_t width = 0;
    /// Rows, for an icon those of colour and mask together.
    uint32_t height = 0;
    bool topDown = false;
    uint32_t planes = 0;
    /// 1, 4, 8, 16, 24 or 32.
    uint32_t bits = 0;
    DibCompression compression = DibCompression::kNone;
    /// Of pixels of 16 and 32 bits.
    ChannelMasks masks;
    /// Bytes from the header's start to its colour table.
    uint32_t tableOffset = 0;
    /// Bytes of a colour: 3 in a BITMAPCOREHEADER's table, else 4.
    uint32_t colourBytes = 4;
    /// Colours that the table has by the header's word, even where there is no use for them.
    uint32_t colours = 0;

    /// Bytes from the header's start to the first byte behind its colour table.
    uint64_t tableEnd() const { return tableOffset + uint64_t{colours} * colourBytes; }
};

/// Reads the header that `dib` begins with. Gives OK, DAMAGED or UNSUPPORTED.
OrvaneCodecResult readDibHeader(const Reader& dib, DibHeader& header);

/// Reads the colour table of `dib`, which may be shorter than declared: `end` is the offset where
/// something else begins. Sets the palette of `out`, black from where the table ends.
void readColours(const Reader& dib, const DibHeader& header, uint64_t end, OrvaneDecoded& out);

/// Fills `out`, a bitmap as deep as the header says, from uncompressed rows. `rows` holds them all;
/// the last one may lack its padding. Sets the channel masks of `out` to what it then has.
void copyRows(std::span<const uint8_t> rows, const DibHeader& header, OrvaneDecoded& out);

/// Fills `out`, a bitmap of 32 bits with the palette of the image, from uncompressed rows of any
/// depth. Gives whether a pixel's fourth byte is anything but 0; it is the pixel's alpha for an
/// image of 32 bits, else 0.
bool expandRows(std::span<const uint8_t> rows, const DibHeader& header, OrvaneDecoded& out);

}  // namespace orvane::codecs

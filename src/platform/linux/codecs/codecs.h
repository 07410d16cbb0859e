#pragma once

// The interface of libOrvanePictures.so: the decoders behind the host's picture loader and behind
// GDI+ on Linux.
//
// The library binds the module at run time and asks for one function, orvaneCodecTable. Everything
// that crosses is plain C, so that neither side needs to know how the other one was built.

#include <stddef.h>
#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

/// Grows whenever a structure of this header changes; a caller refuses any other value.
#define ORVANE_CODEC_VERSION 3u

/// As much of a file's start as `recognises` needs.
#define ORVANE_CODEC_SIGNATURE 64u

/// Name of the one exported function, for dlsym.
#define ORVANE_CODEC_ENTRY "orvaneCodecTable"

/// What decode answers.
enum OrvaneCodecResult {
    ORVANE_CODEC_OK = 0,
    /// None of the formats: another reader may know the file.
    ORVANE_CODEC_NOT_RECOGNISED = 1,
    /// One of the formats, but cut short or contradicting itself.
    ORVANE_CODEC_DAMAGED = 2,
    /// One of the formats, in a variant that the host's loader doesn't read.
    ORVANE_CODEC_UNSUPPORTED = 3,
    /// The picture's surface would exceed 2^31 - 1 bytes, or the system gave no memory.
    ORVANE_CODEC_OUT_OF_MEMORY = 4
};

/// The kinds of picture, numbered as a picture object's `Type` numbers them.
enum OrvanePictureKind {
    ORVANE_PICTURE_BITMAP = 1,
    ORVANE_PICTURE_METAFILE = 2,
    ORVANE_PICTURE_ICON = 3,
    ORVANE_PICTURE_ENHANCED_METAFILE = 4
};

/// A decoded picture. A field that a kind doesn't use is zero.
typedef struct OrvaneDecoded {
    /// One of OrvanePictureKind.
    int32_t kind;
    /// Icons: 1 for an icon, 0 for a cursor.
    int32_t isIcon;
    /// Bitmaps and icons: pixels. Metafiles: hundredths of a millimetre.
    int32_t width;
    int32_t height;
    /// Bitmaps: depth of `pixels` (1, 4, 8, 16, 24 or 32). Icons: depth of the image in the file;
    /// `pixels` are 32 bits deep always.
    int32_t bitsPerPixel;
    /// Icons: the hot spot of a cursor, the middle of an icon.
    int32_t hotspotX;
    int32_t hotspotY;
    /// Bitmaps of 16 bits (5-5-5 or 5-6-5) and of 32 bits, and icons: where a pixel, read as a
    /// little-endian number, has its channels. `alphaMask` is 0 when the top bits mean nothing.
    uint32_t redMask;
    uint32_t greenMask;
    uint32_t blueMask;
    uint32_t alphaMask;
    /// Bitmaps of 1, 4 and 8 bits: entries of `palette` in use. Those behind it are black.
    uint32_t paletteCount;
    /// Blue, green, red and a zero, 256 times.
    uint8_t palette[1024];
    /// Palette entry that the file declares transparent, or -1. Its pixels keep that entry's
    /// colour.
    int32_t transparentIndex;
    /// Bytes from one row of `pixels` to the next, a multiple of 4.
    uint32_t stride;
    /// Rows from the top down. Leftmost pixel in the highest bits of a byte; blue, green, red.
    uint8_t* pixels;
    size_t pixelBytes;
    /// Icons: bytes from one row of `mask` to the next, a multiple of 4.
    uint32_t maskStride;
    /// Icons: one bit a pixel, rows from the top down; 1 keeps the screen, 0 takes the colour.
    uint8_t* mask;
    size_t maskBytes;
    /// Metafiles: the file as it was given.
    uint8_t* file;
    size_t fileBytes;
} OrvaneDecoded;

/// The formats of images that GDI+ reads.
enum OrvaneImageFormat {
    ORVANE_IMAGE_BMP = 1,
    ORVANE_IMAGE_JPEG = 2,
    ORVANE_IMAGE_GIF = 3,
    ORVANE_IMAGE_ICON = 4,
    ORVANE_IMAGE_PNG = 5,
    ORVANE_IMAGE_TIFF = 6
};

/// What GDI+ tells about an image without drawing it.
typedef struct OrvaneImageFacts {
    uint32_t width;
    uint32_t height;
    /// One of OrvaneImageFormat.
    uint32_t format;
    /// GDI+'s number of the pixel format that the file has.
    uint32_t pixelFormat;
} OrvaneImageFacts;

/// Pixels to paint an image on: 4 bytes each, blue, green, red and one that is left at 0, as large
/// as the image.
typedef struct OrvaneCanvas {
    uint32_t width;
    uint32_t height;
    /// The first byte of the top row.
    uint8_t* pixels;
    /// Bytes from one row to the one below; below 0 where rows are stored from the bottom up.
    ptrdiff_t stride;
} OrvaneCanvas;

/// The module's operations. They keep no state and may be called on any thread.
typedef struct OrvaneCodecTable {
    /// ORVANE_CODEC_VERSION of the module.
    uint32_t version;
    /// sizeof(OrvaneDecoded) of the module.
    uint32_t decodedSize;
    /// 1 when a file that starts with these bytes (the first ORVANE_CODEC_SIGNATURE, or all) is of
    /// a format that decode knows: a large file of another reader need not be read for it.
    int (*recognises)(const uint8_t* start, size_t size);
    /// Decodes a BMP, JPEG, GIF, ICO, CUR, WMF or EMF file, told by its first bytes. Gives an
    /// OrvaneCodecResult. `out` is overwritten; it is all zero after any result but OK, and has to
    /// go through release after OK.
    int (*decode)(const uint8_t* bytes, size_t size, OrvaneDecoded* out);
    /// Frees what decode put into `decoded` and zeroes it. Does nothing to a zeroed one.
    void (*release)(OrvaneDecoded* decoded);
    /// The same as recognises for the formats that examine knows.
    int (*recognisesImage)(const uint8_t* start, size_t size);
    /// Tells what image a BMP, JPEG, GIF, ICO, PNG or TIFF file holds, from its header as far as
    /// that goes. Gives an OrvaneCodecResult; `facts` is set after OK only.
    int (*examine)(const uint8_t* bytes, size_t size, OrvaneImageFacts* facts);
    /// Paints the image over what the canvas shows. Gives an OrvaneCodecResult; after any but OK
    /// the canvas may be half painted. UNSUPPORTED when its size isn't the image's.
    int (*paint)(const uint8_t* bytes, size_t size, const OrvaneCanvas* canvas);
} OrvaneCodecTable;

/// The module's table; it lives as long as the module is loaded.
const OrvaneCodecTable* orvaneCodecTable(void);

#ifdef __cplusplus
}
#endif

#pragma once

// The interface of libOrvaneMetafiles.so: what plays Windows metafiles on Linux.
//
// The library binds the module at run time and asks for one function, orvaneMetafileTable. Plain C,
// as the decoders' interface is.

#include "platform/linux/codecs/codecs.h"

#include <stddef.h>
#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

/// Grows whenever a structure of this header changes; a caller refuses any other value.
#define ORVANE_METAFILE_VERSION 1u

/// Name of the one exported function, for dlsym.
#define ORVANE_METAFILE_ENTRY "orvaneMetafileTable"

/// Where on a canvas the whole picture goes, in pixels from its top left corner. A negative width
/// or height mirrors the picture.
typedef struct OrvaneMetafileArea {
    int32_t x;
    int32_t y;
    int32_t width;
    int32_t height;
} OrvaneMetafileArea;

/// The module's operations. They keep no state and may be called on any thread.
typedef struct OrvaneMetafileTable {
    /// ORVANE_METAFILE_VERSION of the module.
    uint32_t version;
    /// Draws a WMF file with a placeable header or an EMF file over what the canvas shows, within
    /// the area. Gives an OrvaneCodecResult. A record that makes no sense is left out, and the
    /// playing ends where the chain of records breaks: both are OK, as on Windows.
    int (*play)(const uint8_t* bytes, size_t size, const OrvaneCanvas* canvas,
                const OrvaneMetafileArea* area);
} OrvaneMetafileTable;

/// The module's table; it lives as long as the module is loaded.
const OrvaneMetafileTable* orvaneMetafileTable(void);

#ifdef __cplusplus
}
#endif

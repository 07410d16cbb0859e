#pragma once

#include "platform/linux/codecs/codecs.h"
#include "platform/linux/codecs/surface.h"

#include <cstdint>
#include <memory>
#include <span>

#include <tiffio.h>

namespace orvane::codecs {

/// A TIFF file in memory, opened at its first page. libtiff's messages go nowhere.
class TiffFile {
public:
    TiffFile(std::span<const uint8_t> file, const Limits& limits);

    bool isOpen() const { return tiff_ != nullptr; }
    TIFF* get() const { return tiff_.get(); }
    /// Bytes of the whole file.
    uint64_t size() const { return source_.bytes.size(); }

    /// A tag's number, or the value that the format gives it when the tag isn't there.
    uint16_t number(uint32_t tag) const;

private:
    struct Source {
        std::span<const uint8_t> bytes;
        uint64_t position = 0;
    };
    struct Close {
        void operator()(TIFF* tiff) const { TIFFClose(tiff); }
    };

    static tmsize_t read(thandle_t handle, void* to, tmsize_t size);
    static tmsize_t write(thandle_t handle, void* from, tmsize_t size);
    static toff_t seek(thandle_t handle, toff_t offset, int whence);
    static int close(thandle_t handle);
    static toff_t sizeOf(thandle_t handle);
    static int map(thandle_t handle, void** base, toff_t* size);
    static void unmap(thandle_t handle, void* base, toff_t size);

    Source source_;
    std::unique_ptr<TIFF, Close> tiff_;
};

}  // namespace orvane::codecs

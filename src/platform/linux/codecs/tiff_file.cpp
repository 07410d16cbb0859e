#include "platform/linux/codecs/tiff_file.h"

#include <algorithm>
#include <cstring>

namespace orvane::codecs {

namespace {

int ignoreMessage(TIFF*, void*, const char*, const char*, va_list) {
    return 1;
}

struct FreeOptions {
    void operator()(TIFFOpenOptions* options) const { TIFFOpenOptionsFree(options); }
};

}  // namespace

TiffFile::TiffFile(std::span<const uint8_t> file, const Limits& limits) : source_{file} {
    const std::unique_ptr<TIFFOpenOptions, FreeOptions> options(TIFFOpenOptionsAlloc());
    if (options == nullptr) return;
    TIFFOpenOptionsSetMaxSingleMemAlloc(options.get(), static_cast<tmsize_t>(limits.workBytes));
    TIFFOpenOptionsSetErrorHandlerExtR(options.get(), ignoreMessage, nullptr);
    TIFFOpenOptionsSetWarningHandlerExtR(options.get(), ignoreMessage, nullptr);
    tiff_.reset(TIFFClientOpenExt("", "r", &source_, read, write, seek, close, sizeOf, map, unmap,
                                  options.get()));
}

uint16_t TiffFile::number(uint32_t tag) const {
    uint16_t value = 0;
    TIFFGetFieldDefaulted(get(), tag, &value);
    return value;
}

tmsize_t TiffFile::read(thandle_t handle, void* to, tmsize_t size) {
    Source& source = *static_cast<Source*>(handle);
    if (size <= 0 || source.position >= source.bytes.size()) return 0;
    const std::span<const uint8_t> left = source.bytes.subspan(source.position);
    const size_t length = std::min(static_cast<size_t>(size), left.size());
    std::memcpy(to, left.data(), length);
    source.position += length;
    return static_cast<tmsize_t>(length);
}

tmsize_t TiffFile::write(thandle_t, void*, tmsize_t) {
    return -1;
}

toff_t TiffFile::seek(thandle_t handle, toff_t offset, int whence) {
    Source& source = *static_cast<Source*>(handle);
    if (whence == SEEK_CUR) offset += source.position;
    if (whence == SEEK_END) offset += source.bytes.size();
    source.position = offset;
    return offset;
}

int TiffFile::close(thandle_t) {
    return 0;
}

toff_t TiffFile::sizeOf(thandle_t handle) {
    return static_cast<Source*>(handle)->bytes.size();
}

// libtiff reads mapped files in place; "r" never writes to them.
int TiffFile::map(thandle_t handle, void** base, toff_t* size) {
    const std::span<const uint8_t> bytes = static_cast<Source*>(handle)->bytes;
    *base = const_cast<uint8_t*>(bytes.data());
    *size = bytes.size();
    return 1;
}

void TiffFile::unmap(thandle_t, void*, toff_t) {}

}  // namespace orvane::codecs

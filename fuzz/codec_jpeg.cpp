#include "codec_target.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    orvane::codecs::fuzz::run(orvane::codecs::decodeJpeg, data, size);
    return 0;
}

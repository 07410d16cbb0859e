#include "codec_target.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    orvane::codecs::fuzz::run(orvane::codecs::decodeIcon, data, size);
    return 0;
}

#include "image_target.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    using namespace orvane::codecs;
    fuzz::runImage(examinePng, paintPng, data, size);
    return 0;
}

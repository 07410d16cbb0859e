#include <zlib.h>

// zlib's own entries are C calls; hosts that know standard calls only reach it through these. The
// module definition exports them under zlib's names.
extern "C" int __stdcall uncompressStdCall(Bytef* destination, uLongf* length, const Bytef* source,
                                           uLong size);
extern "C" const char* __stdcall zlibVersionStdCall();

int __stdcall uncompressStdCall(Bytef* destination, uLongf* length, const Bytef* source,
                                uLong size) {
    return uncompress(destination, length, source, size);
}

const char* __stdcall zlibVersionStdCall() {
    return zlibVersion();
}

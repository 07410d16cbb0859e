#include "pictures/CFilePCX.h"
#include "pictures/pcx_reference.h"
#include "reader_target.h"

/// A PCX file: the reader and the reference come to the same outcome and the same pixels.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace orvane;
    const std::span bytes(data, size);
    test::reference::mostBytes = fuzz::kMostBytes;
    fuzz::compare<CFilePCX>(&CFilePCX::ReadPCX, size > 0 && data[0] == 10,
                            test::referencePcx(bytes), bytes);
    return 0;
}

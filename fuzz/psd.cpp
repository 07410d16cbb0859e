#include "pictures/CFilePSD.h"
#include "pictures/psd_reference.h"
#include "reader_target.h"

/// A Photoshop document: the reader and the reference come to the same outcome and the same pixels.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace orvane;
    const std::span bytes(data, size);
    test::reference::mostBytes = fuzz::kMostBytes;
    fuzz::compare<CFilePSD>(&CFilePSD::ReadPSD, size >= 4 && std::memcmp(data, "8BPS", 4) == 0,
                            test::referencePsd(bytes), bytes);
    return 0;
}

#include "network/gzip_outcome.h"
#include "target.h"

#include <cstddef>
#include <cstdint>
#include <string>

namespace {

/// As much data as the reference makes in time.
constexpr std::int32_t kMostData = 1 << 20;

}  // namespace

/// A gzip member: the reader and the reference come to the same outcome, fields and data.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace orvane;
    static const Ref<orvGZipArchive> archive = make<orvGZipArchive>();
    std::string bytes(reinterpret_cast<const char*>(data), size);
    test::GzipReference reference(bytes, kMostData);
    if (reference.tooLong()) {
        // A longer one takes no more memory than its body can fill, unless its CRC is right. The
        // fuzzer copies what it saw compared into the input, so it does find the CRC of a gigabyte
        // of NULs; behind this mask it doesn't.
        for (std::size_t i = size - 8; i < size - 4; ++i)
            bytes[i] ^= 0x5A;
        reference = test::GzipReference(bytes, kMostData);
    }
    const test::GzipOutcome outcome = test::outcomeOf(*archive, bytes);
    require(reference.tooLong() ? outcome.code == 2 : outcome == reference.outcome());
    return 0;
}

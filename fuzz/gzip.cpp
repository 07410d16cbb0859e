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
    const std::string bytes(reinterpret_cast<const char*>(data), size);
    const test::GzipReference reference(bytes, kMostData);
    if (!reference.tooLong()) {
        require(test::outcomeOf(*archive, bytes) == reference.outcome());
        return 0;
    }
    // A longer one is a mismatch but for one in four thousand million, and takes no more memory
    // than its body can fill.
    const test::GzipOutcome outcome = test::outcomeOf(*archive, bytes);
    require(outcome.code == 2 || outcome.code == 0);
    return 0;
}

#include "platform/linux/codecs/decoders.h"
#include "platform/oleaut32.h"
#include "support/memory_stream.h"
#include "target.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>

namespace {

/// Few bytes may rightly stand for a picture of gigabytes: those are left to the decoders' own
/// targets, which run under a limit.
bool isHuge(std::span<const std::uint8_t> stream) {
    constexpr std::size_t kStreamHeader = 8;
    if (stream.size() <= kStreamHeader) return false;
    OrvaneDecoded decoded{};
    orvane::codecs::Limits limits;
    limits.surfaceBytes = std::uint64_t{16} << 20;
    limits.workBytes = std::uint64_t{64} << 20;
    const auto result = orvane::codecs::decodeAny(stream.subspan(kStreamHeader), decoded, limits);
    orvane::codecs::release(decoded);
    return result == ORVANE_CODEC_OUT_OF_MEMORY;
}

}  // namespace

/// What a host's stream holds where a picture is loaded from it. What loads can be saved, and what
/// was saved loads again.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (isHuge({data, size})) return 0;
    IPictureDisp* picture = nullptr;
    if (orvane::platform::oleaut32.OleCreatePictureIndirect({}, true, picture) < 0) std::abort();
    void* found = nullptr;
    if (FAILED(picture->QueryInterface(IID_IPersistStream, &found))) std::abort();
    auto* persist = static_cast<IPersistStream*>(found);
    orvane::test::MemoryStream given;
    given.bytes.assign(data, data + size);
    if (SUCCEEDED(persist->Load(&given))) {
        orvane::test::MemoryStream saved;
        if (SUCCEEDED(persist->Save(&saved, 1)) && FAILED(persist->Load(&saved))) std::abort();
    }
    persist->Release();
    picture->Release();
    return 0;
}

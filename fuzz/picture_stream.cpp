#include "platform/oleaut32.h"
#include "support/memory_stream.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

/// What a host's stream holds where a picture is loaded from it. What loads can be saved, and what
/// was saved loads again.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
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

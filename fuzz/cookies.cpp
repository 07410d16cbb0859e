#include "network/Cookies.h"

#include "network/cookies_reference.h"
#include "target.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

/// Cookies of a server, one unit a byte: what comes of them is what the single steps make of them.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::u16string cookies(data, data + size);
    if (!(orvane::GetFormattedCookies(cookies) == orvane::test::referenceCookies(cookies))) {
        std::abort();
    }
    return 0;
}

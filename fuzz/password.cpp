#include "network/modPasswordCryptor.h"

#include "frame/values/codepage.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <span>
#include <string>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace {

void require(bool holds) {
    if (!holds) std::abort();
}

}  // namespace

/// A hidden password as a registry may hold it, and one that was hidden just now.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace orvane;
    const std::u16string hidden(data, data + size);
    const WString shown = DecryptPassword(hidden);
    require(shown.empty() || shown.size() == size / 4);

    const WString password = fromAnsi(std::span(data, size));
    require(DecryptPassword(EncryptPassword(password)) == password.view());
    return 0;
}

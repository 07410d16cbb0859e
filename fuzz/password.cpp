#include "network/modPasswordCryptor.h"

#include "frame/values/codepage.h"
#include "target.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>

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

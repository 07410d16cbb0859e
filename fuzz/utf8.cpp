#include "support/utf8.h"
#include "target.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

/// Bytes from the clipboard as UTF-8: the reader takes anything, and what it gives is well-formed.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    const std::u16string text = orvane::decodeUtf8(bytes);
    require(text.size() <= size);

    const std::string again = orvane::encodeUtf8(text);
    require(orvane::decodeUtf8(again) == text);
    if (text.find(u'\uFFFD') == std::u16string::npos) require(again == bytes);

    // The same bytes as UTF-16 units: the writer takes any units, surrogates in any order included.
    std::u16string units;
    for (std::size_t place = 0; place + 1 < size; place += 2) {
        units += static_cast<char16_t>(data[place] << 8 | data[place + 1]);
    }
    require(orvane::decodeUtf8(orvane::encodeUtf8(units)).size() == units.size());
    return 0;
}

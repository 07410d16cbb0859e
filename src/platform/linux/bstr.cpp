#include <orvane/automation.h>

#include <cstdlib>
#include <cstring>
#include <limits>
#include <string>

// A string's block: 4 bytes with the count of its bytes, its units, a null unit.

namespace {

constexpr std::size_t kPrefix = sizeof(std::uint32_t);

BSTR allocate(std::size_t bytes) {
    if (bytes > std::numeric_limits<std::int32_t>::max()) {
        return nullptr;
    }
    // One more byte than the null unit takes: an odd count of bytes is followed by a whole unit
    // too.
    auto* block = static_cast<std::uint8_t*>(std::malloc(kPrefix + bytes + sizeof(OLECHAR) + 1));
    if (block == nullptr) {
        return nullptr;
    }
    const auto count = static_cast<std::uint32_t>(bytes);
    std::memcpy(block, &count, kPrefix);
    std::memset(block + kPrefix + bytes, 0, sizeof(OLECHAR) + 1);
    void* text = block + kPrefix;
    return static_cast<BSTR>(text);
}

}  // namespace

BSTR SysAllocStringLen(const OLECHAR* text, UINT length) {
    const std::size_t bytes = std::size_t{length} * sizeof(OLECHAR);
    const BSTR copy = allocate(bytes);
    if (copy != nullptr && text != nullptr) {
        std::memcpy(copy, text, bytes);
    } else if (copy != nullptr) {
        std::memset(copy, 0, bytes);
    }
    return copy;
}

BSTR SysAllocString(const OLECHAR* text) {
    if (text == nullptr) {
        return nullptr;
    }
    const std::size_t length = std::char_traits<OLECHAR>::length(text);
    if (length > std::numeric_limits<UINT>::max()) {
        return nullptr;
    }
    return SysAllocStringLen(text, static_cast<UINT>(length));
}

BSTR SysAllocStringByteLen(const char* bytes, UINT size) {
    const BSTR copy = allocate(size);
    if (copy != nullptr && bytes != nullptr) {
        std::memcpy(copy, bytes, size);
    } else if (copy != nullptr) {
        std::memset(copy, 0, size);
    }
    return copy;
}

void SysFreeString(BSTR text) {
    if (text != nullptr) {
        void* units = text;
        std::free(static_cast<std::uint8_t*>(units) - kPrefix);
    }
}

UINT SysStringLen(BSTR text) {
    return SysStringByteLen(text) / UINT{sizeof(OLECHAR)};
}

UINT SysStringByteLen(BSTR text) {
    std::uint32_t count = 0;
    if (text != nullptr) {
        const void* units = text;
        std::memcpy(&count, static_cast<const std::uint8_t*>(units) - kPrefix, kPrefix);
    }
    return count;
}

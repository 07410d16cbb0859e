#include "frame/values/large_memory.h"

#include "platform/kernel32.h"
#include "platform/memory.h"

#include <algorithm>
#include <cstdlib>

namespace orvane {
namespace {

constexpr std::size_t kLarge = std::size_t{4} << 20;

}  // namespace

void* allocateZeroed(std::size_t size) {
    if (size >= kLarge) return platform::kernel32.VirtualAlloc(size);
    return std::calloc(std::max<std::size_t>(size, 1), 1);
}

void freeZeroed(void* block, std::size_t size) {
    if (block == nullptr) return;
    if (size >= kLarge) {
        platform::kernel32.VirtualFree(block, size);
    } else {
        std::free(block);
    }
}

std::u16string textWithRoom(std::size_t units) {
    std::u16string text;
    text.reserve(units);
    const std::size_t size = text.capacity() * sizeof(char16_t);
    if (size >= kLarge) platform::expectFilling(text.data(), size);
    return text;
}

}  // namespace orvane

#include "support/allocations.h"

#include <cstdint>
#include <cstdlib>
#include <new>
#include <utility>

namespace {

thread_local std::size_t allocated = 0;
thread_local std::size_t tooLarge = SIZE_MAX;

}  // namespace

// The program's own operators: arrays and the forms that don't throw come here, too.
void* operator new(std::size_t size) {
    ++allocated;
    if (size >= tooLarge) throw std::bad_alloc();
    if (void* block = std::malloc(size == 0 ? 1 : size)) return block;
    throw std::bad_alloc();
}

void operator delete(void* block) noexcept {
    std::free(block);
}

void operator delete(void* block, std::size_t) noexcept {
    std::free(block);
}

namespace orvane::test {

AllocationCount::AllocationCount() : before_(allocated) {}

std::size_t AllocationCount::count() const {
    return allocated - before_;
}

ShortMemory::ShortMemory(std::size_t size) : before_(std::exchange(tooLarge, size)) {}

ShortMemory::~ShortMemory() {
    tooLarge = before_;
}

}  // namespace orvane::test

#include "support/allocations.h"

#include <cstdint>
#include <cstdlib>
#include <new>
#include <utility>

namespace {

thread_local std::size_t allocated = 0;
thread_local std::size_t tooLarge = SIZE_MAX;

}  // namespace

// The program's own operators: arrays come here, too. The form that doesn't throw would, but for
// the sanitizers, which bring one of their own.
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
    ++allocated;
    return size >= tooLarge ? nullptr : std::malloc(size == 0 ? 1 : size);
}

void* operator new(std::size_t size) {
    if (void* block = operator new(size, std::nothrow)) return block;
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

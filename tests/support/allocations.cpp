#include "support/allocations.h"

#include <cstdlib>
#include <new>

namespace {

thread_local std::size_t allocated = 0;

}  // namespace

// The program's own operators: arrays and the forms that don't throw come here, too.
void* operator new(std::size_t size) {
    ++allocated;
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

}  // namespace orvane::test

#pragma once

#include <cstddef>

namespace orvane::test {

/// Counts what the calling thread takes from the C++ heap while it lives.
class AllocationCount {
public:
    AllocationCount();
    std::size_t count() const;

private:
    std::size_t before_;
};

/// While it lives, the calling thread gets no block of `size` bytes or more from the C++ heap.
class ShortMemory {
public:
    explicit ShortMemory(std::size_t size);
    ~ShortMemory();
    ShortMemory(const ShortMemory&) = delete;
    ShortMemory& operator=(const ShortMemory&) = delete;

private:
    std::size_t before_;
};

}  // namespace orvane::test

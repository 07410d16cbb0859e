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

}  // namespace orvane::test

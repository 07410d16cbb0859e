#pragma once

#include <cstddef>

namespace orvane::platform {

/// Tells the system that memory which wasn't written yet is about to be filled. Where it has large
/// pages, that takes much less time by them; elsewhere it changes nothing.
void expectFilling(void* memory, std::size_t size);

}  // namespace orvane::platform

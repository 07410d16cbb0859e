#include "platform/linux/registry_answer.h"

#include <atomic>

namespace orvane::platform {

std::uint64_t RegistryAnswer::freshStamp() {
    static constinit std::atomic<std::uint64_t> last = 0;
    return ++last;
}

std::uint64_t& RegistryAnswer::ofThread() {
    constinit thread_local std::uint64_t stamp = 0;
    if (stamp == 0) stamp = freshStamp();
    return stamp;
}

}  // namespace orvane::platform

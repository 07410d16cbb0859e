#include "platform/linux/errors.h"
#include "platform/linux/kernel32_parts.h"

#include <cerrno>
#include <sys/mman.h>

namespace orvane::platform {

// Pages of 2 MiB where the system has them: touching a picture's memory for the first time costs
// more than filling it otherwise.
void* allocatePages(std::size_t size) {
    void* pages = ::mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (pages == MAP_FAILED) {
        setLastError(errorFromErrno(errno));
        return nullptr;
    }
    ::madvise(pages, size, MADV_HUGEPAGE);
    return pages;
}

bool freePages(void* pages, std::size_t size) {
    if (::munmap(pages, size) == 0) return true;
    setLastError(errorFromErrno(errno));
    return false;
}

}  // namespace orvane::platform

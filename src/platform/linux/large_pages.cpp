#include "platform/linux/large_pages.h"

#include "platform/linux/errors.h"
#include "platform/linux/kernel32_parts.h"
#include "platform/memory.h"

#include <cerrno>
#include <sys/mman.h>

namespace orvane::platform {

void* allocatePages(std::size_t size) {
    void* pages = ::mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (pages == MAP_FAILED) {
        setLastError(errorFromErrno(errno));
        return nullptr;
    }
    preferLargePages(pages, size);
    return pages;
}

bool freePages(void* pages, std::size_t size) {
    if (::munmap(pages, size) == 0) return true;
    setLastError(errorFromErrno(errno));
    return false;
}

void expectFilling(void* memory, std::size_t size) {
    preferLargePages(memory, size);
}

}  // namespace orvane::platform

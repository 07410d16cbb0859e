#include "platform/linux/surface.h"

#include "platform/linux/errors.h"
#include "platform/linux/large_pages.h"

#include <atomic>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <new>
#include <sys/mman.h>
#include <utility>

namespace orvane::platform {

namespace {

// From here on the pages come straight from the system; below, the allocator is quicker.
constexpr std::size_t kOwnPages = 1u << 20;

std::uint8_t* zeroPages(std::size_t size) {
    void* pages = ::mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (pages == MAP_FAILED) {
        return nullptr;
    }
    preferLargePages(pages, size);
    return static_cast<std::uint8_t*>(pages);
}

}  // namespace

PixelBlock::PixelBlock(std::size_t size) : size_(size) {
    data_ = size >= kOwnPages ? zeroPages(size) : static_cast<std::uint8_t*>(std::calloc(1, size));
}

PixelBlock::PixelBlock(std::uint8_t* data, std::size_t size, std::function<void()> release)
    : data_(data), size_(size), release_(std::move(release)) {}

PixelBlock::PixelBlock(PixelBlock&& other) noexcept
    : data_(std::exchange(other.data_, nullptr)), size_(std::exchange(other.size_, 0)),
      release_(std::exchange(other.release_, nullptr)) {}

PixelBlock& PixelBlock::operator=(PixelBlock&& other) noexcept {
    std::swap(data_, other.data_);
    std::swap(size_, other.size_);
    std::swap(release_, other.release_);
    return *this;
}

PixelBlock::~PixelBlock() {
    if (release_) {
        release_();
    } else if (data_ != nullptr && size_ >= kOwnPages) {
        ::munmap(data_, size_);
    } else {
        std::free(data_);
    }
}

std::shared_ptr<Surface> Surface::create(std::int32_t width, std::int32_t height,
                                         PixelFormat format, bool topDown) {
    if (width <= 0 || height <= 0 || !isDepth(format.bits)) {
        return failWith<std::shared_ptr<Surface>>(kErrorInvalidParameter, nullptr);
    }
    const std::uint64_t stride = rowStride(static_cast<std::uint32_t>(width), format.bits);
    const std::uint64_t size = stride * static_cast<std::uint64_t>(height);
    if (size > std::numeric_limits<std::int32_t>::max()) {
        return failWith<std::shared_ptr<Surface>>(kErrorNotEnoughMemory, nullptr);
    }
    PixelBlock pixels(size);
    if (pixels.data() == nullptr) {
        return failWith<std::shared_ptr<Surface>>(kErrorNotEnoughMemory, nullptr);
    }
    auto surface = adopt(width, height, std::move(format), stride, std::move(pixels));
    if (surface != nullptr) {
        surface->topDown_ = topDown;
    }
    return surface;
}

std::shared_ptr<Surface> Surface::adopt(std::int32_t width, std::int32_t height, PixelFormat format,
                                        std::size_t stride, PixelBlock pixels) {
    const bool sizesFit = width > 0 && height > 0 && isDepth(format.bits) &&
                          rowStride(static_cast<std::uint32_t>(width), format.bits) <= stride &&
                          stride <= std::numeric_limits<std::int32_t>::max() &&
                          stride * static_cast<std::uint64_t>(height) <= pixels.size() &&
                          pixels.data() != nullptr;
    if (!sizesFit) {
        return failWith<std::shared_ptr<Surface>>(kErrorInvalidParameter, nullptr);
    }
    try {
        auto surface = std::make_shared<Surface>();
        surface->width_ = width;
        surface->height_ = height;
        surface->stride_ = stride;
        surface->topDown_ = true;
        surface->format_ = std::move(format);
        surface->pixels_ = std::make_shared<PixelBlock>(std::move(pixels));
        return surface;
    } catch (const std::bad_alloc&) {
        return failWith<std::shared_ptr<Surface>>(kErrorNotEnoughMemory, nullptr);
    }
}

void Surface::own() {
    if (pixels_.use_count() == 1) {
        // What the last other owner read is read before anything is written here.
        std::atomic_thread_fence(std::memory_order_acquire);
        return;
    }
    const std::size_t size = stride_ * static_cast<std::size_t>(height_);
    PixelBlock fresh(size);
    if (fresh.data() == nullptr) {
        throw std::bad_alloc();
    }
    std::memcpy(fresh.data(), bits(), size);
    pixels_ = std::make_shared<PixelBlock>(std::move(fresh));
}

std::uint8_t* Surface::expose() {
    own();
    isExposed_ = true;
    return pixels_->data();
}

std::shared_ptr<Surface> Surface::copy() const {
    try {
        auto surface = std::make_shared<Surface>();
        surface->width_ = width_;
        surface->height_ = height_;
        surface->stride_ = stride_;
        surface->topDown_ = topDown_;
        surface->format_ = format_;
        surface->pixels_ = pixels_;
        surface->isMonochrome = isMonochrome;
        if (isExposed_) {
            surface->own();
        }
        return surface;
    } catch (const std::bad_alloc&) {
        return failWith<std::shared_ptr<Surface>>(kErrorNotEnoughMemory, nullptr);
    }
}

}  // namespace orvane::platform

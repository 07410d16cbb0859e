#include "stream.h"

#include <algorithm>
#include <cstring>
#include <limits>
#include <new>
#include <stdexcept>

namespace orvane::tool {

namespace {

// STREAM_SEEK_SET and its neighbours; STGTY_STREAM.
constexpr DWORD kFromStart = 0;
constexpr DWORD kFromPosition = 1;
constexpr DWORD kFromEnd = 2;
constexpr DWORD kStreamType = 2;

constexpr std::uint64_t kMostBytes = std::numeric_limits<std::int32_t>::max();

}  // namespace

HRESULT MemoryStream::QueryInterface(REFIID iid, void** object) {
    if (object == nullptr) return E_POINTER;
    const bool known = iid == IID_IUnknown || iid == IID_ISequentialStream || iid == IID_IStream;
    *object = known ? static_cast<IStream*>(this) : nullptr;
    if (known) AddRef();
    return known ? S_OK : E_NOINTERFACE;
}

HRESULT MemoryStream::Read(void* data, ULONG size, ULONG* read) {
    if (data == nullptr) return E_POINTER;
    const std::uint64_t left = bytes_.size() - std::min<std::uint64_t>(position_, bytes_.size());
    const auto count = static_cast<ULONG>(std::min<std::uint64_t>(size, left));
    if (count > 0) std::memcpy(data, bytes_.data() + position_, count);
    position_ += count;
    if (read != nullptr) *read = count;
    return count == size ? S_OK : S_FALSE;
}

HRESULT MemoryStream::Write(const void* data, ULONG size, ULONG* written) {
    if (written != nullptr) *written = 0;
    if (data == nullptr) return E_POINTER;
    const std::uint64_t end = position_ + size;
    if (end > bytes_.size()) {
        if (const HRESULT status = resize(end); FAILED(status)) return status;
    }
    if (size > 0) std::memcpy(bytes_.data() + position_, data, size);
    position_ = end;
    if (written != nullptr) *written = size;
    return S_OK;
}

HRESULT MemoryStream::Seek(LARGE_INTEGER move, DWORD origin, ULARGE_INTEGER* position) {
    std::int64_t start = 0;
    if (origin == kFromPosition) start = static_cast<std::int64_t>(position_);
    else if (origin == kFromEnd) start = static_cast<std::int64_t>(bytes_.size());
    else if (origin != kFromStart) return E_INVALIDARG;
    const auto most = static_cast<std::int64_t>(kMostBytes);
    if (move.QuadPart < -start || move.QuadPart > most - start) return E_INVALIDARG;
    position_ = static_cast<std::uint64_t>(start + move.QuadPart);
    if (position != nullptr) position->QuadPart = position_;
    return S_OK;
}

HRESULT MemoryStream::SetSize(ULARGE_INTEGER size) {
    return resize(size.QuadPart);
}

HRESULT MemoryStream::Stat(STATSTG* stat, DWORD) {
    if (stat == nullptr) return E_POINTER;
    *stat = {};
    stat->type = kStreamType;
    stat->cbSize.QuadPart = bytes_.size();
    return S_OK;
}

HRESULT MemoryStream::resize(std::uint64_t size) {
    if (size > kMostBytes) return E_OUTOFMEMORY;
    try {
        bytes_.resize(static_cast<std::size_t>(size));
        return S_OK;
    } catch (const std::exception&) {
        return E_OUTOFMEMORY;
    }
}

}  // namespace orvane::tool

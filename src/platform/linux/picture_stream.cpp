#include "platform/linux/picture.h"
#include "platform/linux/picture_save.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <limits>
#include <new>
#include <span>

namespace orvane::platform {

namespace {

// In a stream the picture's file follows 8 bytes: this number ("lt" and two zeroes) and the file's
// length. A picture without content is the 8 bytes with a length of 0.
constexpr std::uint32_t kStreamMagic = 0x0000746C;
constexpr std::size_t kStreamHeader = 8;

constexpr CLSID kStandardPicture = {
    0x0BE35204, 0x8F91, 0x11CE, {0x9D, 0xE3, 0x00, 0xAA, 0x00, 0x4B, 0xB8, 0x51}};

HRESULT writeAll(IStream& stream, std::span<const std::uint8_t> bytes) {
    while (!bytes.empty()) {
        ULONG written = 0;
        const HRESULT result =
            stream.Write(bytes.data(), static_cast<ULONG>(bytes.size()), &written);
        if (FAILED(result)) {
            return result;
        }
        if (written == 0 || written > bytes.size()) {
            return E_FAIL;
        }
        bytes = bytes.subspan(written);
    }
    return S_OK;
}

HRESULT readAll(IStream& stream, std::span<std::uint8_t> bytes) {
    while (!bytes.empty()) {
        ULONG read = 0;
        const HRESULT result = stream.Read(bytes.data(), static_cast<ULONG>(bytes.size()), &read);
        if (FAILED(result)) {
            return result;
        }
        if (read == 0 || read > bytes.size()) {
            return E_FAIL;
        }
        bytes = bytes.subspan(read);
    }
    return S_OK;
}

/// Reads `size` bytes piece by piece: a length that the stream does not hold costs no memory.
HRESULT readFile(IStream& stream, std::uint32_t size, std::vector<std::uint8_t>& file) {
    constexpr std::size_t kPiece = 1u << 20;
    while (file.size() < size) {
        const std::size_t start = file.size();
        file.resize(start + std::min<std::size_t>(kPiece, size - start));
        const HRESULT result = readAll(stream, std::span(file).subspan(start));
        if (FAILED(result)) {
            return result;
        }
    }
    return S_OK;
}

}  // namespace

HRESULT Picture::GetClassID(CLSID* classId) {
    if (classId == nullptr) {
        return E_POINTER;
    }
    *classId = kStandardPicture;
    return S_OK;
}

HRESULT Picture::IsDirty() {
    return dirty_ ? S_OK : S_FALSE;
}

HRESULT Picture::Load(IStream* stream) {
    if (stream == nullptr) {
        return E_POINTER;
    }
    try {
        std::array<std::uint8_t, kStreamHeader> header{};
        if (const HRESULT result = readAll(*stream, header); FAILED(result)) {
            return result;
        }
        std::uint32_t magic = 0;
        std::uint32_t size = 0;
        std::memcpy(&magic, header.data(), sizeof magic);
        std::memcpy(&size, header.data() + sizeof magic, sizeof size);
        if (magic != kStreamMagic || size > std::numeric_limits<std::int32_t>::max()) {
            return E_FAIL;
        }
        std::vector<std::uint8_t> file;
        if (const HRESULT result = readFile(*stream, size, file); FAILED(result)) {
            return result;
        }
        PictureContent content;
        const std::int32_t failure = size == 0 ? 0 : contentFromFile(file, content);
        if (failure != 0) {
            return failure == kRuntimeOutOfMemory ? E_OUTOFMEMORY : E_FAIL;
        }
        releaseContent(content_);
        content_ = content;
        dirty_ = false;
        return S_OK;
    } catch (const std::bad_alloc&) {
        return E_OUTOFMEMORY;
    }
}

HRESULT Picture::Save(IStream* stream, BOOL clearDirty) {
    if (stream == nullptr) {
        return E_POINTER;
    }
    try {
        const std::vector<std::uint8_t> file = savedContent(content_);
        if (file.empty() && content_.type != PICTYPE_NONE) {
            return E_FAIL;
        }
        const auto size = static_cast<std::uint32_t>(file.size());
        std::array<std::uint8_t, kStreamHeader> header{};
        std::memcpy(header.data(), &kStreamMagic, sizeof kStreamMagic);
        std::memcpy(header.data() + sizeof kStreamMagic, &size, sizeof size);
        HRESULT result = writeAll(*stream, header);
        if (SUCCEEDED(result)) {
            result = writeAll(*stream, file);
        }
        dirty_ = dirty_ && (FAILED(result) || clearDirty == 0);
        return result;
    } catch (const std::bad_alloc&) {
        return E_OUTOFMEMORY;
    }
}

HRESULT Picture::GetSizeMax(ULARGE_INTEGER* size) {
    if (size == nullptr) {
        return E_POINTER;
    }
    try {
        size->QuadPart = kStreamHeader + savedContent(content_).size();
        return S_OK;
    } catch (const std::bad_alloc&) {
        return E_OUTOFMEMORY;
    }
}

// The original file of a picture is not kept, so there is only its memory copy to write.
HRESULT Picture::SaveAsFile(IStream* stream, BOOL, LONG* size) {
    if (stream == nullptr) {
        return E_POINTER;
    }
    try {
        const std::vector<std::uint8_t> file = savedContent(content_);
        if (file.empty()) {
            return E_FAIL;
        }
        const HRESULT result = writeAll(*stream, file);
        if (SUCCEEDED(result) && size != nullptr) {
            *size = static_cast<LONG>(file.size());
        }
        return result;
    } catch (const std::bad_alloc&) {
        return E_OUTOFMEMORY;
    }
}

}  // namespace orvane::platform

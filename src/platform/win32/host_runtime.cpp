#include "platform/host_runtime.h"

#include "platform/win32/kernel32_files.h"
#include "platform/win32/picture_signature.h"
#include "platform/win32/system.h"

#include <ole2.h>
#include <olectl.h>

#include <array>
#include <limits>

namespace orvane::platform {

namespace win32 {

namespace {

// Run-time errors of `HostRuntime::LoadPicture`.
constexpr std::int32_t kLoaded = 0;
constexpr std::int32_t kOutOfMemory = 7;
constexpr std::int32_t kFileNotFound = 53;
constexpr std::int32_t kFileAccessError = 75;
constexpr std::int32_t kInvalidPicture = 481;

/// A file that is open for reading.
class InputFile {
public:
    explicit InputFile(const std::string& fileName)
        : file_(createFile(fileName, FileAccess::read, FileDisposition::openExisting)) {}
    ~InputFile() {
        if (isOpen()) closeHandle(file_);
    }
    InputFile(const InputFile&) = delete;
    InputFile& operator=(const InputFile&) = delete;

    bool isOpen() const { return file_ != FileHandle::none; }
    std::int64_t size() const { return getFileSize(file_); }

    /// Fills the block from a position on; false when it can't be filled.
    bool read(std::int64_t position, std::span<std::uint8_t> block) const {
        std::uint32_t count = 0;
        return setFilePointer(file_, position) && readFile(file_, block, count) &&
               count == block.size();
    }

private:
    FileHandle file_;
};

std::int32_t openError() {
    switch (lastError()) {
    case kErrorFileNotFound:
    case kErrorPathNotFound:
    case kErrorInvalidName:
        return kFileNotFound;
    default:
        return kFileAccessError;
    }
}

/// The file in a stream over movable memory that the stream frees, as the system's loader wants it.
std::int32_t streamOf(const InputFile& file, std::size_t size, IStream*& stream) {
    const HGLOBAL memory = ::GlobalAlloc(GMEM_MOVEABLE, size);
    if (memory == nullptr) return kOutOfMemory;
    auto* const bytes = static_cast<std::uint8_t*>(::GlobalLock(memory));
    const bool read = bytes != nullptr && file.read(0, {bytes, size});
    ::GlobalUnlock(memory);
    if (!read) {
        ::GlobalFree(memory);
        return bytes == nullptr ? kOutOfMemory : kFileAccessError;
    }
    if (SUCCEEDED(::CreateStreamOnHGlobal(memory, TRUE, &stream))) return kLoaded;
    ::GlobalFree(memory);
    return kOutOfMemory;
}

std::int32_t runtimeError(HRESULT result) {
    if (SUCCEEDED(result)) return kLoaded;
    return result == E_OUTOFMEMORY ? kOutOfMemory : kInvalidPicture;
}

std::int32_t loadFromStream(const InputFile& file, std::size_t size, void*& object) {
    IStream* stream = nullptr;
    const std::int32_t error = streamOf(file, size, stream);
    if (error != kLoaded) return error;
    const HRESULT result =
        ::OleLoadPicture(stream, static_cast<LONG>(size), FALSE, IID_IPictureDisp, &object);
    stream->Release();
    return runtimeError(result);
}

// The system's loader isn't asked: Wine's makes an icon of a cursor. A cursor's handle goes into a
// picture of the icon type either way, and the picture destroys it.
std::int32_t loadCursor(const std::string& fileName, void*& object) {
    const HANDLE cursor =
        ::LoadImageA(nullptr, fileName.c_str(), IMAGE_CURSOR, 0, 0, LR_LOADFROMFILE);
    if (cursor == nullptr) return kInvalidPicture;
    PICTDESC facts{};
    facts.cbSizeofstruct = sizeof(facts);
    facts.picType = PICTYPE_ICON;
    facts.icon.hicon = static_cast<HICON>(cursor);
    const HRESULT result = ::OleCreatePictureIndirect(&facts, IID_IPictureDisp, TRUE, &object);
    if (FAILED(result)) ::DestroyCursor(static_cast<HCURSOR>(cursor));
    return runtimeError(result);
}

/// Wine's loader takes PNG and TIFF, and Windows' own may learn more formats: the file's signature
/// decides first.
std::int32_t loadPicture(const std::string& fileName, IPictureDisp*& picture) {
    picture = nullptr;
    const InputFile file(fileName);
    if (!file.isOpen()) return openError();
    const std::int64_t size = file.size();
    if (size < 0) return kFileAccessError;
    if (size > std::numeric_limits<LONG>::max()) return kOutOfMemory;

    std::array<std::uint8_t, kPictureSignatureSize> start{};
    const auto head =
        std::span(start).first(std::min(start.size(), static_cast<std::size_t>(size)));
    if (!file.read(0, head)) return kFileAccessError;
    const PictureSignature signature = pictureSignature(head);
    if (signature == PictureSignature::unknown) return kInvalidPicture;

    void* object = nullptr;
    const std::int32_t error = signature == PictureSignature::cur
                                   ? loadCursor(fileName, object)
                                   : loadFromStream(file, static_cast<std::size_t>(size), object);
    if (error == kLoaded) picture = static_cast<IPictureDisp*>(object);
    return error;
}

constexpr HostRuntime bound() {
    HostRuntime table;
    table.LoadPicture.bind<loadPicture>();
    return table;
}
static_assert(allBound(bound()));

}  // namespace

}  // namespace win32

constinit HostRuntime hostRuntime = win32::bound();

}  // namespace orvane::platform

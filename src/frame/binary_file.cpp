#include "frame/binary_file.h"

#include "frame/errors.h"
#include "frame/values/codepage.h"
#include "platform/kernel32.h"

#include <algorithm>
#include <array>
#include <limits>
#include <utility>

namespace orvane {
namespace {

using platform::kernel32;

struct ErrorPair {
    std::uint32_t platform;
    std::int32_t runtime;
};

// The runtime's own choices for the platform errors of file work and of calls into libraries.
constexpr std::array kErrorPairs = {
    ErrorPair{platform::kErrorFileNotFound, error::kFileNotFound},
    ErrorPair{platform::kErrorPathNotFound, error::kPathNotFound},
    ErrorPair{platform::kErrorTooManyOpenFiles, error::kTooManyFiles},
    ErrorPair{platform::kErrorAccessDenied, error::kPathAccess},
    ErrorPair{platform::kErrorInvalidHandle, error::kBadFileNumber},
    ErrorPair{platform::kErrorNotEnoughMemory, error::kOutOfMemory},
    ErrorPair{14, error::kOutOfMemory},       // out of memory for the operation
    ErrorPair{15, error::kPathNotFound},      // no such drive
    ErrorPair{19, error::kPermissionDenied},  // write-protected
    ErrorPair{platform::kErrorSharingViolation, error::kPermissionDenied},
    ErrorPair{33, error::kPermissionDenied},  // a part of the file is locked
    ErrorPair{39, error::kDiskFull},
    ErrorPair{platform::kErrorFileExists, error::kFileExists},
    ErrorPair{platform::kErrorInvalidParameter, error::kInvalidArgument},
    ErrorPair{platform::kErrorDiskFull, error::kDiskFull},
    ErrorPair{platform::kErrorInvalidName, error::kBadFileNumber},
    ErrorPair{platform::kErrorModuleNotFound, error::kFileNotFound},
    ErrorPair{platform::kErrorProcedureNotFound, error::kEntryPointNotFound},
    ErrorPair{161, error::kPathNotFound},  // malformed path
    ErrorPair{platform::kErrorAlreadyExists, error::kFileExists},
    ErrorPair{206, error::kBadFileNumber},  // name or path too long
    ErrorPair{267, error::kPathNotFound},   // no such folder, or a file in its place
};

[[noreturn]] void raisePlatformError() {
    raise(runtimeErrorFor(platform::lastError()));
}

/// A count of bytes moves a position by that much, or to the end of all positions.
std::int64_t advanced(std::int64_t offset, std::size_t count) {
    const auto room = static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max() - offset);
    if (count > room) raise(error::kBadRecordNumber);
    return offset + static_cast<std::int64_t>(count);
}

}  // namespace

std::int32_t runtimeErrorFor(std::uint32_t platformError) {
    const auto found = std::ranges::find(kErrorPairs, platformError, &ErrorPair::platform);
    return found == kErrorPairs.end() ? error::kDeviceError : found->runtime;
}

BinaryFile::~BinaryFile() {
    if (isOpen()) kernel32.CloseHandle(handle_);
}

void BinaryFile::open(WStringView name, FileMode mode) {
    if (isOpen()) raise(error::kFileAlreadyOpen);
    const std::string ansiName = toAnsi(name);
    // The platform would take the part before a NUL for the name.
    if (ansiName.find('\0') != std::string::npos) raise(error::kBadFileNumber);
    using platform::FileAccess;
    using platform::FileDisposition;
    const FileAccess access = mode == FileMode::read        ? FileAccess::read
                              : mode != FileMode::readWrite ? FileAccess::write
                                                            : FileAccess::readWrite;
    const FileDisposition disposition = mode == FileMode::read ? FileDisposition::openExisting
                                        : mode == FileMode::createNew ? FileDisposition::createNew
                                                                      : FileDisposition::openAlways;
    const platform::FileHandle handle = kernel32.CreateFileA(ansiName, access, disposition);
    if (handle == platform::FileHandle::none) raisePlatformError();
    handle_ = handle;
    mode_ = mode;
    pastEnd_ = false;
    platformOffset_ = 0;
    knownEnd_ = kUnknown;
    dropBlock(0);
}

void BinaryFile::close() {
    if (!isOpen()) return;
    const platform::FileHandle handle = std::exchange(handle_, platform::FileHandle::none);
    dropBlock(0);
    if (!kernel32.CloseHandle(handle)) raisePlatformError();
}

void BinaryFile::get(std::span<std::uint8_t> out) {
    requireOpen();
    const auto inBlock = std::min(out.size(), static_cast<std::size_t>(end_ - next_));
    std::copy_n(next_, inBlock, out.begin());
    next_ += inBlock;
    out = out.subspan(inBlock);
    if (out.empty()) return;
    const std::int64_t behind = advanced(offset(), out.size());
    std::size_t read = 0;
    if (out.size() >= kDirect) {
        read = readAt(offset(), out);
        dropBlock(behind);
    } else if (fill()) {
        read = std::min(out.size(), static_cast<std::size_t>(end_ - next_));
        std::copy_n(next_, read, out.begin());
        next_ += read;
        if (read < out.size()) dropBlock(behind);
    } else {
        dropBlock(behind);
    }
    if (read == out.size()) return;
    pastEnd_ = true;
    std::ranges::fill(out.subspan(read), std::uint8_t{0});
}

void BinaryFile::skip(std::size_t count) {
    requireOpen();
    if (count <= static_cast<std::size_t>(end_ - next_)) {
        next_ += count;
    } else {
        dropBlock(advanced(offset(), count));
    }
}

void BinaryFile::put(std::span<const std::uint8_t> data) {
    requireOpen();
    if (mode_ == FileMode::read) raise(error::kPathAccess);
    const std::int64_t at = offset();
    const std::int64_t behind = advanced(at, data.size());
    // What the block holds may be written over, and the file may grow.
    dropBlock(at);
    knownEnd_ = kUnknown;
    moveTo(at);
    while (!data.empty()) {
        const auto piece = data.first(std::min<std::size_t>(data.size(), 0x40000000));
        std::uint32_t written = 0;
        if (!kernel32.WriteFile(handle_, piece, written)) raisePlatformError();
        if (written == 0) raise(error::kDiskFull);
        platformOffset_ += written;
        data = data.subspan(written);
    }
    dropBlock(behind);
}

void BinaryFile::seek(std::int64_t position) {
    requireOpen();
    if (position < 1) raise(error::kBadRecordNumber);
    knownEnd_ = kUnknown;
    const std::int64_t newOffset = position - 1;
    if (newOffset >= blockStart_ && newOffset - blockStart_ <= end_ - block_.get()) {
        next_ = block_.get() + (newOffset - blockStart_);
    } else {
        dropBlock(newOffset);
    }
}

std::int64_t BinaryFile::position() const {
    requireOpen();
    return offset() + 1;
}

std::int64_t BinaryFile::lof() const {
    requireOpen();
    const std::int64_t length = kernel32.GetFileSize(handle_);
    if (length < 0) raisePlatformError();
    return length;
}

void BinaryFile::requireOpen() const {
    if (!isOpen()) raise(error::kBadFileNumber);
}

/// Forgets the bytes in memory; the next read begins at `newOffset`.
void BinaryFile::dropBlock(std::int64_t newOffset) {
    blockStart_ = newOffset;
    next_ = end_ = block_.get();
}

/// Reads the block that begins at the position; false when the file has ended there.
bool BinaryFile::fill() {
    requireOpen();
    const std::int64_t start = offset();
    if (!block_) block_ = std::make_unique_for_overwrite<std::uint8_t[]>(kBlock);
    dropBlock(start);
    end_ = block_.get() + readAt(start, {block_.get(), kBlock});
    return end_ != next_;
}

std::uint8_t BinaryFile::getSlowly() {
    if (isOpen() && offset() >= knownEnd_) {
        // A decoder of a truncated file asks for byte after byte behind the end.
        dropBlock(advanced(offset(), 1));
        pastEnd_ = true;
        return 0;
    }
    std::uint8_t byte = 0;
    get(std::span<std::uint8_t>(&byte, 1));
    return byte;
}

/// Reads until `out` is full or the file ends; how much there was.
std::size_t BinaryFile::readAt(std::int64_t fileOffset, std::span<std::uint8_t> out) {
    if (mode_ == FileMode::write || mode_ == FileMode::createNew) raise(error::kPathAccess);
    if (fileOffset >= knownEnd_) return 0;
    moveTo(fileOffset);
    std::size_t done = 0;
    while (done < out.size()) {
        const auto piece = out.subspan(done, std::min<std::size_t>(out.size() - done, 0x40000000));
        std::uint32_t read = 0;
        if (!kernel32.ReadFile(handle_, piece, read)) raisePlatformError();
        if (read == 0) {
            knownEnd_ = platformOffset_;
            break;
        }
        platformOffset_ += read;
        done += read;
    }
    return done;
}

void BinaryFile::moveTo(std::int64_t fileOffset) {
    if (platformOffset_ == fileOffset) return;
    if (!kernel32.SetFilePointer(handle_, fileOffset)) raisePlatformError();
    platformOffset_ = fileOffset;
}

}  // namespace orvane

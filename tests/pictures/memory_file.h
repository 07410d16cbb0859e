#pragma once

#include "platform/kernel32.h"
#include "support/recorder.h"

#include <algorithm>
#include <cstdint>
#include <span>
#include <string>

namespace orvane::test {

/// While it lives, every name opens as a file of these bytes, without a disk. The bytes stay the
/// caller's.
class MemoryFile {
public:
    explicit MemoryFile(std::span<const std::uint8_t> bytes) : bytes_(bytes) {}

    /// How many opened files are not closed.
    int open() const { return open_; }
    /// How many calls read from the file.
    int reads() const { return reads_; }

private:
    static constexpr auto kHandle = static_cast<platform::FileHandle>(0x7FFFFFF1);

    bool read(std::span<std::uint8_t> buffer, std::uint32_t& count) {
        ++reads_;
        const std::size_t at = std::min(offset_, bytes_.size());
        const std::size_t part = std::min(buffer.size(), bytes_.size() - at);
        std::copy_n(bytes_.begin() + static_cast<std::ptrdiff_t>(at), part, buffer.begin());
        offset_ = at + part;
        count = static_cast<std::uint32_t>(part);
        return true;
    }

    std::span<const std::uint8_t> bytes_;
    std::size_t offset_ = 0;
    int open_ = 0;
    int reads_ = 0;

    ScopedTarget<platform::FileHandle(const std::string&, platform::FileAccess,
                                      platform::FileDisposition)>
        createFile_{platform::kernel32.CreateFileA,
                    [this](const std::string&, platform::FileAccess, platform::FileDisposition) {
                        offset_ = 0;
                        ++open_;
                        return kHandle;
                    }};
    ScopedTarget<bool(platform::FileHandle, std::span<std::uint8_t>, std::uint32_t&)> readFile_{
        platform::kernel32.ReadFile, [this](platform::FileHandle, std::span<std::uint8_t> buffer,
                                            std::uint32_t& count) { return read(buffer, count); }};
    ScopedTarget<bool(platform::FileHandle, std::int64_t)> setFilePointer_{
        platform::kernel32.SetFilePointer, [this](platform::FileHandle, std::int64_t position) {
            offset_ = static_cast<std::size_t>(position);
            return true;
        }};
    ScopedTarget<std::int64_t(platform::FileHandle)> getFileSize_{
        platform::kernel32.GetFileSize,
        [this](platform::FileHandle) { return static_cast<std::int64_t>(bytes_.size()); }};
    ScopedTarget<bool(platform::FileHandle)> closeHandle_{platform::kernel32.CloseHandle,
                                                          [this](platform::FileHandle) {
                                                              --open_;
                                                              return true;
                                                          }};
};

}  // namespace orvane::test

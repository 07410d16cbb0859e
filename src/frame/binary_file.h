#pragma once

#include "frame/values/wstring.h"
#include "platform/handles.h"

#include <concepts>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <memory>
#include <span>

namespace orvane {

/// The run-time error number for a platform error that file work met.
std::int32_t runtimeErrorFor(std::uint32_t platformError);

/// What a file is opened for. `write` and `readWrite` create a file that isn't there and keep the
/// content of one that is; `createNew` writes to a file that must not be there yet.
enum class FileMode { read, write, readWrite, createNew };

/// A file of bytes with a position counted from 1, closed at the end of the object's life.
///
/// Reads are buffered; writes go to the platform at once. A read past the end of the file is no
/// error: the bytes that aren't there come back as zero, the position moves on as if they had been
/// read, and `pastEnd` tells that it happened. Everything but `open` and `close` raises 52 on a
/// closed file; a failure of the platform raises the error of `runtimeErrorFor`.
class BinaryFile {
public:
    BinaryFile() = default;
    /// Opens at once, see `open`.
    BinaryFile(WStringView name, FileMode mode) { open(name, mode); }
    BinaryFile(const BinaryFile&) = delete;
    BinaryFile& operator=(const BinaryFile&) = delete;
    ~BinaryFile();

    /// Opens a file at position 1. The name crosses to the platform in the ANSI code page. Raises
    /// 53 when the file to read isn't there, 76 for a folder that isn't there, 75 and 70 when
    /// access is refused, 58 when the file to create is there already, 52 for an impossible name,
    /// 55 when this object has a file open.
    void open(WStringView name, FileMode mode);
    bool isOpen() const { return handle_ != platform::FileHandle::none; }
    /// Closes the file; nothing happens when none is open.
    void close();

    /// Fills `out` from the position on.
    void get(std::span<std::uint8_t> out);
    /// One byte, or a whole number with its low byte first.
    template <std::integral T>
    T get() {
        if constexpr (sizeof(T) == 1) {
            if (next_ == end_) return static_cast<T>(getSlowly());
            return static_cast<T>(*next_++);
        } else {
            std::uint8_t bytes[sizeof(T)];
            get(bytes);
            std::make_unsigned_t<T> value = 0;
            for (std::size_t i = sizeof(T); i-- > 0;) {
                value = static_cast<std::make_unsigned_t<T>>((value << 8) | bytes[i]);
            }
            return static_cast<T>(value);
        }
    }

    /// The bytes from the position on that are in memory, at least one unless the file ends here.
    /// The view holds until the next call on this object other than `skip`.
    std::span<const std::uint8_t> peekBuffered() {
        if (next_ == end_) fill();
        return {next_, end_};
    }
    /// Moves the position on by `count` bytes without reading them.
    void skip(std::size_t count);

    /// Writes at the position and moves it on. Raises 75 on a file that was opened for reading.
    void put(std::span<const std::uint8_t> data);
    /// One byte, or a whole number with its low byte first.
    template <std::integral T>
    void put(T value) {
        std::uint8_t bytes[sizeof(T)];
        auto rest = static_cast<std::make_unsigned_t<T>>(value);
        for (std::uint8_t& byte : bytes) {
            byte = static_cast<std::uint8_t>(rest & 0xFF);
            if constexpr (sizeof(T) > 1) rest = static_cast<std::make_unsigned_t<T>>(rest >> 8);
        }
        put(std::span<const std::uint8_t>(bytes));
    }

    /// Moves to a position, also beyond the end; raises 63 below 1.
    void seek(std::int64_t position);
    /// The position of the next byte.
    std::int64_t position() const;
    /// The length of the file in bytes.
    std::int64_t lof() const;
    /// Whether a read since `open` went past the end of the file.
    bool pastEnd() const { return pastEnd_; }

private:
    static constexpr std::size_t kBlock = 65536;
    /// Reads of this size and above go straight into the caller's memory: one more call of the
    /// platform costs less than copying them out of the block.
    static constexpr std::size_t kDirect = 4096;
    static constexpr std::int64_t kUnknown = std::numeric_limits<std::int64_t>::max();

    void requireOpen() const;
    std::int64_t offset() const { return blockStart_ + (next_ - block_.get()); }
    void dropBlock(std::int64_t newOffset);
    bool fill();
    std::uint8_t getSlowly();
    std::size_t readAt(std::int64_t fileOffset, std::span<std::uint8_t> out);
    void moveTo(std::int64_t fileOffset);

    platform::FileHandle handle_ = platform::FileHandle::none;
    FileMode mode_ = FileMode::read;
    bool pastEnd_ = false;
    std::unique_ptr<std::uint8_t[]> block_;
    const std::uint8_t* next_ = nullptr;  ///< the next byte of the block
    const std::uint8_t* end_ = nullptr;   ///< behind the block's last byte
    std::int64_t blockStart_ = 0;         ///< where the block begins in the file, from 0
    std::int64_t platformOffset_ = 0;     ///< where the platform would read or write next
    std::int64_t knownEnd_ = kUnknown;    ///< where a read found the file's end, from 0
};

}  // namespace orvane

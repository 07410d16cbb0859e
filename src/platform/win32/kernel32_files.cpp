#include "platform/win32/kernel32_files.h"

#include "platform/win32/system.h"

#include <array>

namespace orvane::platform::win32 {

namespace {

HANDLE systemFile(FileHandle file) {
    return systemHandle<HANDLE>(file);
}

}  // namespace

FileHandle createFile(const std::string& fileName, FileAccess access, FileDisposition disposition) {
    if (!crosses(fileName)) return FileHandle::none;
    const HANDLE file = ::CreateFileA(
        fileName.c_str(), static_cast<DWORD>(access), FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
        static_cast<DWORD>(disposition), FILE_ATTRIBUTE_NORMAL, nullptr);
    return file == INVALID_HANDLE_VALUE ? FileHandle::none : ownHandle<FileHandle>(file);
}

bool readFile(FileHandle file, std::span<std::uint8_t> buffer, std::uint32_t& read) {
    DWORD count = 0;
    const bool done = ::ReadFile(systemFile(file), buffer.data(), static_cast<DWORD>(buffer.size()),
                                 &count, nullptr) != 0;
    read = count;
    return done;
}

bool writeFile(FileHandle file, std::span<const std::uint8_t> data, std::uint32_t& written) {
    DWORD count = 0;
    const bool done = ::WriteFile(systemFile(file), data.data(), static_cast<DWORD>(data.size()),
                                  &count, nullptr) != 0;
    written = count;
    return done;
}

bool setFilePointer(FileHandle file, std::int64_t position) {
    LARGE_INTEGER distance;
    distance.QuadPart = position;
    return ::SetFilePointerEx(systemFile(file), distance, nullptr, FILE_BEGIN) != 0;
}

std::int64_t getFileSize(FileHandle file) {
    LARGE_INTEGER size;
    return ::GetFileSizeEx(systemFile(file), &size) ? size.QuadPart : -1;
}

bool closeHandle(FileHandle file) {
    return ::CloseHandle(systemFile(file)) != 0;
}

bool deleteFile(const std::string& fileName) {
    return crosses(fileName) && ::DeleteFileA(fileName.c_str());
}

std::uint32_t getFileAttributes(const std::string& fileName) {
    return crosses(fileName) ? ::GetFileAttributesA(fileName.c_str()) : kInvalidFileAttributes;
}

bool createDirectory(const std::string& path) {
    return crosses(path) && ::CreateDirectoryA(path.c_str(), nullptr);
}

std::string getTempPath() {
    return systemText([](char* buffer, DWORD size) { return ::GetTempPathA(size, buffer); });
}

std::string getTempFileName(const std::string& folder, const std::string& prefix) {
    if (!crosses(folder) || !crosses(prefix)) return {};
    std::array<char, MAX_PATH + 1> name{};
    const UINT number = ::GetTempFileNameA(folder.c_str(), prefix.c_str(), 0, name.data());
    return number == 0 ? std::string() : std::string(name.data());
}

std::string getFullPathName(const std::string& name) {
    if (!crosses(name)) return {};
    if (name.empty()) return failed(kErrorInvalidName, std::string());
    return systemText([&name](char* buffer, DWORD size) {
        return ::GetFullPathNameA(name.c_str(), size, buffer, nullptr);
    });
}

std::string getLongPathName(const std::string& name) {
    if (!crosses(name)) return {};
    return systemText([&name](char* buffer, DWORD size) {
        return ::GetLongPathNameA(name.c_str(), buffer, size);
    });
}

}  // namespace orvane::platform::win32

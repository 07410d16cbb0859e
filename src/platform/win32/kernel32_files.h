#pragma once

#include "platform/kernel32.h"

namespace orvane::platform::win32 {

// Files, folders and file names, as the table of `kernel32.h` describes them.
FileHandle createFile(const std::string& fileName, FileAccess access, FileDisposition disposition);
bool readFile(FileHandle file, std::span<std::uint8_t> buffer, std::uint32_t& read);
bool writeFile(FileHandle file, std::span<const std::uint8_t> data, std::uint32_t& written);
bool setFilePointer(FileHandle file, std::int64_t position);
std::int64_t getFileSize(FileHandle file);
bool closeHandle(FileHandle file);
bool deleteFile(const std::string& fileName);
std::uint32_t getFileAttributes(const std::string& fileName);
bool createDirectory(const std::string& path);
std::string getTempPath();
std::string getTempFileName(const std::string& folder, const std::string& prefix);
std::string getFullPathName(const std::string& name);
std::string getLongPathName(const std::string& name);

}  // namespace orvane::platform::win32

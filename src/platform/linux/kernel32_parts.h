#pragma once

#include "platform/kernel32.h"

/// The functions behind the `Kernel32` table; each file beside this header carries out one group.
namespace orvane::platform {

// kernel32_files.cpp
FileHandle createFile(const std::string& fileName, FileAccess access, FileDisposition disposition);
bool readFile(FileHandle file, std::span<std::uint8_t> buffer, std::uint32_t& read);
bool writeFile(FileHandle file, std::span<const std::uint8_t> data, std::uint32_t& written);
bool setFilePointer(FileHandle file, std::int64_t position);
std::int64_t fileSize(FileHandle file);
bool closeHandle(FileHandle file);

// mutexes.cpp
MutexHandle createMutex(const std::string& name);
bool closeMutex(MutexHandle mutex);

// kernel32_names.cpp
bool deleteFile(const std::string& fileName);
std::uint32_t fileAttributes(const std::string& fileName);
bool createDirectory(const std::string& path);
std::string tempPath();
std::string tempFileName(const std::string& folder, const std::string& prefix);
std::string fullPathName(const std::string& name);
std::string longPathName(const std::string& name);

// kernel32_modules.cpp
std::string moduleFileName(ModuleHandle module);
ModuleHandle moduleHandle(const std::string& moduleName);
ModuleHandle moduleOf(const void* address);
ModuleHandle loadLibrary(const std::string& fileName);
bool freeLibrary(ModuleHandle library);
/// True when `module` is the one that stands for the network library's message table.
bool isNetworkMessages(ModuleHandle module);

// kernel32_system.cpp
std::string computerName();
bool memoryStatus(MemoryStatus& status);
bool systemVersion(SystemVersion& version);
void outputDebugString(const std::string& text);
std::uint32_t currentThreadId();
std::uint32_t tickCount();
bool performanceCounter(std::int64_t& counter);
bool performanceFrequency(std::int64_t& frequency);
std::uint64_t systemTimeAsFileTime();

// command_line.cpp
const char16_t* commandLine();

// messages.cpp
std::string formatMessage(ModuleHandle module, std::uint32_t number);

// thread_slots.cpp
std::uint32_t allocateSlot(void (*onThreadEnd)(void* value));
bool freeSlot(std::uint32_t slot);
void* slotValue(std::uint32_t slot);
bool setSlotValue(std::uint32_t slot, void* value);

// large_pages.cpp
void* allocatePages(std::size_t size);
bool freePages(void* pages, std::size_t size);

/// The number for a file operation on `path` (in the system's form) that failed with `number`:
/// a missing name in a folder that is there is 2, a missing folder on the way to it is 3.
std::uint32_t fileError(int number, const std::string& path);

}  // namespace orvane::platform

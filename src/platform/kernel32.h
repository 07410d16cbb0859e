#pragma once

#include "platform/handles.h"
#include "platform/operation.h"

#include <array>

namespace orvane::platform {

/// How `CreateFileA` opens (the platform's own access bits and dispositions).
enum class FileAccess : std::uint32_t {
    read = 0x80000000,
    write = 0x40000000,
    readWrite = 0xC0000000
};
enum class FileDisposition : std::uint32_t {
    /// Fails with `kErrorFileExists` when the name is taken. Where folders for temporary files are
    /// shared by all users, the new file is for its owner alone.
    createNew = 1,
    createAlways = 2,
    openExisting = 3,
    openAlways = 4
};

inline constexpr std::uint32_t kInvalidFileAttributes = 0xFFFFFFFF;
inline constexpr std::uint32_t kFileAttributeDirectory = 0x10;

/// Memory figures in bytes, with the percentage in use (`MEMORYSTATUSEX`).
struct MemoryStatus {
    std::uint32_t memoryLoad = 0;
    std::uint64_t totalPhysical = 0;
    std::uint64_t availablePhysical = 0;
    std::uint64_t totalPageFile = 0;
    std::uint64_t availablePageFile = 0;
    std::uint64_t totalVirtual = 0;
    std::uint64_t availableVirtual = 0;
};
void describe(std::string& out, const MemoryStatus& status);

/// The host system (`OSVERSIONINFOA`): `platformId` 1 is the 9x line, 2 the NT line.
/// `systemName` is the platform's own long name where it has one ("Debian GNU/Linux 12
/// (bookworm)"), else empty.
struct SystemVersion {
    std::uint32_t major = 0;
    std::uint32_t minor = 0;
    std::uint32_t build = 0;
    std::uint32_t platformId = 0;
    std::string servicePack;
    std::string systemName;
};
void describe(std::string& out, const SystemVersion& version);

/// Names and texts are in the ANSI code page, as the `A` entry points take them.
struct Kernel32 {
    Operation<FileHandle(const std::string& fileName, FileAccess access,
                         FileDisposition disposition)>
        CreateFileA{"kernel32",
                    "CreateFileA",
                    FileHandle::none,
                    kErrorFileNotFound,
                    {"file", Holding::kResult}};
    /// Reads up to `buffer.size()` bytes at the file's position; `read` 0 is the end of the file.
    Operation<bool(FileHandle file, std::span<std::uint8_t> buffer, std::uint32_t& read)> ReadFile{
        "kernel32", "ReadFile", false, kErrorInvalidFunction};
    Operation<bool(FileHandle file, std::span<const std::uint8_t> data, std::uint32_t& written)>
        WriteFile{"kernel32", "WriteFile", false, kErrorDiskFull};
    /// Moves the file's position, counted from 0 at the file's start.
    Operation<bool(FileHandle file, std::int64_t position)> SetFilePointer{
        "kernel32", "SetFilePointer", false, kErrorInvalidParameter};
    /// The file's length in bytes, or -1.
    Operation<std::int64_t(FileHandle file)> GetFileSize{"kernel32", "GetFileSize", -1,
                                                         kErrorInvalidHandle};
    Operation<bool(FileHandle file)> CloseHandle{
        "kernel32", "CloseHandle", false, kErrorInvalidHandle, {"file", Holding::kNothing, 0}};
    /// Creates or opens the mutex of a name, which exists until its last handle is closed or that
    /// handle's process ends; an empty name gives one that nobody shares. The last error is 0 when
    /// it is new and `kErrorAlreadyExists` when it was there. None when it failed:
    /// `kErrorAccessDenied` when another user has the name.
    Operation<MutexHandle(const std::string& name)> CreateMutexA{"kernel32",
                                                                 "CreateMutexA",
                                                                 MutexHandle::none,
                                                                 kErrorNotEnoughMemory,
                                                                 {"mutex", Holding::kResult}};
    /// The platform's `CloseHandle` for mutexes. A handle that was closed before is refused with
    /// `kErrorInvalidHandle` and closes nothing else, whatever was opened since.
    Operation<bool(MutexHandle mutex)> CloseMutexHandle{
        "kernel32", "CloseHandle", false, kErrorInvalidHandle, {"mutex", Holding::kNothing, 0}};
    Operation<std::uint32_t()> GetCurrentThreadId{"kernel32", "GetCurrentThreadId"};
    Operation<bool(const std::string& fileName)> DeleteFileA{"kernel32", "DeleteFileA", false,
                                                             kErrorAccessDenied};
    /// Attribute bits, or `kInvalidFileAttributes`.
    Operation<std::uint32_t(const std::string& fileName)> GetFileAttributesA{
        "kernel32", "GetFileAttributesA", kInvalidFileAttributes, kErrorFileNotFound};
    Operation<bool(const std::string& path)> CreateDirectoryA{"kernel32", "CreateDirectoryA", false,
                                                              kErrorAccessDenied};
    /// The system's temporary folder with a separator at its end, or empty.
    Operation<std::string()> GetTempPathA{"kernel32", "GetTempPathA", {}, kErrorPathNotFound};
    /// Creates an empty file of a new name in `folder`, exclusively; its full name, or empty.
    Operation<std::string(const std::string& folder, const std::string& prefix)> GetTempFileNameA{
        "kernel32", "GetTempFileNameA", {}, kErrorAccessDenied};
    Operation<std::string(const std::string& name)> GetFullPathNameA{
        "kernel32", "GetFullPathNameA", {}, kErrorInvalidName};
    Operation<std::string(const std::string& name)> GetLongPathNameA{
        "kernel32", "GetLongPathNameA", {}, kErrorFileNotFound};
    /// The process's command line; the platform owns it.
    Operation<const char16_t*()> GetCommandLineW{"kernel32", "GetCommandLineW", nullptr, 0};
    /// A loaded module's file name; `ModuleHandle::none` is the host's executable.
    Operation<std::string(ModuleHandle module)> GetModuleFileNameA{
        "kernel32", "GetModuleFileNameA", {}, kErrorModuleNotFound};
    Operation<ModuleHandle(const std::string& moduleName)> GetModuleHandleA{
        "kernel32", "GetModuleHandleA", ModuleHandle::none, kErrorModuleNotFound};
    /// The module that holds the code or data at `address`; nothing to give back.
    Operation<ModuleHandle(const void* address)> GetModuleHandleExA{
        "kernel32", "GetModuleHandleExA", ModuleHandle::none, kErrorModuleNotFound};
    /// Loads a library by its full name, or by a bare one along the system's own search path, where
    /// one that the process has loaded already comes first.
    Operation<ModuleHandle(const std::string& fileName)> LoadLibraryA{
        "kernel32",
        "LoadLibraryA",
        ModuleHandle::none,
        kErrorModuleNotFound,
        {"library", Holding::kResult}};
    /// Gives back what `LoadLibraryA` gave; the library stays while others hold it.
    Operation<bool(ModuleHandle library)> FreeLibrary{
        "kernel32", "FreeLibrary", false, kErrorInvalidHandle, {"library", Holding::kNothing, 0}};
    Operation<std::string()> GetComputerNameA{
        "kernel32", "GetComputerNameA", {}, kErrorInvalidFunction};
    Operation<bool(MemoryStatus& status)> GlobalMemoryStatusEx{"kernel32", "GlobalMemoryStatusEx",
                                                               false, kErrorInvalidFunction};
    Operation<bool(SystemVersion& version)> GetVersionExA{"kernel32", "GetVersionExA", false,
                                                          kErrorInvalidFunction};
    /// The text of an error number, from `module`'s message table or, with none, the system's.
    Operation<std::string(ModuleHandle module, std::uint32_t number)> FormatMessageA{
        "kernel32", "FormatMessageA", {}, kErrorInvalidParameter};
    Operation<void(const std::string& text)> OutputDebugStringA{"kernel32", "OutputDebugStringA"};
    /// Milliseconds since the system started.
    Operation<std::uint32_t()> GetTickCount{"kernel32", "GetTickCount"};
    /// The high-resolution counter, and how many of its ticks a second has.
    Operation<bool(std::int64_t& counter)> QueryPerformanceCounter{
        "kernel32", "QueryPerformanceCounter", false, kErrorInvalidFunction};
    Operation<bool(std::int64_t& frequency)> QueryPerformanceFrequency{
        "kernel32", "QueryPerformanceFrequency", false, kErrorInvalidFunction};
    /// 100-nanosecond steps since 1601-01-01 UTC.
    Operation<std::uint64_t()> GetSystemTimeAsFileTime{"kernel32", "GetSystemTimeAsFileTime"};
    /// Zeroed pages for large data, which take memory only where they are touched; null when there
    /// are none.
    Operation<void*(std::size_t size)> VirtualAlloc{"kernel32", "VirtualAlloc", nullptr,
                                                    kErrorNotEnoughMemory};
    /// Gives pages back; `size` as they were asked for.
    Operation<bool(void* pages, std::size_t size)> VirtualFree{"kernel32", "VirtualFree", false,
                                                               kErrorInvalidParameter};
    /// A slot with one pointer a thread. `onThreadEnd` gets each non-null pointer when its thread
    /// ends; it may only free memory.
    Operation<std::uint32_t(void (*onThreadEnd)(void* value))> TlsAlloc{
        "kernel32", "TlsAlloc", 0xFFFFFFFF, kErrorNotEnoughMemory};
    Operation<bool(std::uint32_t slot)> TlsFree{"kernel32", "TlsFree", false,
                                                kErrorInvalidParameter};
    Operation<void*(std::uint32_t slot)> TlsGetValue{"kernel32", "TlsGetValue", nullptr, 0};
    Operation<bool(std::uint32_t slot, void* value)> TlsSetValue{"kernel32", "TlsSetValue", false,
                                                                 kErrorNotEnoughMemory};

    template <class Visitor>
    constexpr void visit(Visitor&& visitor) {
        visitor(CreateFileA, ReadFile, WriteFile, SetFilePointer, GetFileSize, CloseHandle,
                CreateMutexA, CloseMutexHandle, GetCurrentThreadId, DeleteFileA, GetFileAttributesA,
                CreateDirectoryA, GetTempPathA, GetTempFileNameA, GetFullPathNameA,
                GetLongPathNameA, GetCommandLineW, GetModuleFileNameA, GetModuleHandleA,
                GetModuleHandleExA, LoadLibraryA, FreeLibrary, GetComputerNameA,
                GlobalMemoryStatusEx, GetVersionExA, FormatMessageA, OutputDebugStringA,
                GetTickCount, QueryPerformanceCounter, QueryPerformanceFrequency,
                GetSystemTimeAsFileTime, TlsAlloc, TlsFree, TlsGetValue, TlsSetValue, VirtualAlloc,
                VirtualFree);
    }
};
extern Kernel32 kernel32;

/// The 256 units of the ANSI and of the OEM code page: 1251 and 866 on Linux, the system's on
/// Windows. Every byte has exactly one unit.
const std::array<char16_t, 256>& ansiCodePage();
const std::array<char16_t, 256>& oemCodePage();

}  // namespace orvane::platform

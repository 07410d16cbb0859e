#include "platform/linux/kernel32_parts.h"

namespace orvane::platform {

namespace {

constexpr Kernel32 boundTable() {
    Kernel32 table;
    table.CreateFileA.bind<&createFile>();
    table.ReadFile.bind<&readFile>();
    table.WriteFile.bind<&writeFile>();
    table.SetFilePointer.bind<&setFilePointer>();
    table.GetFileSize.bind<&fileSize>();
    table.CloseHandle.bind<&closeHandle>();
    table.CreateMutexA.bind<&createMutex>();
    table.CloseMutexHandle.bind<&closeMutex>();
    table.GetCurrentThreadId.bind<&currentThreadId>();
    table.DeleteFileA.bind<&deleteFile>();
    table.GetFileAttributesA.bind<&fileAttributes>();
    table.CreateDirectoryA.bind<&createDirectory>();
    table.GetTempPathA.bind<&tempPath>();
    table.GetTempFileNameA.bind<&tempFileName>();
    table.GetFullPathNameA.bind<&fullPathName>();
    table.GetLongPathNameA.bind<&longPathName>();
    table.GetCommandLineW.bind<&commandLine>();
    table.GetModuleFileNameA.bind<&moduleFileName>();
    table.GetModuleHandleA.bind<&moduleHandle>();
    table.GetModuleHandleExA.bind<&moduleOf>();
    table.LoadLibraryA.bind<&loadLibrary>();
    table.FreeLibrary.bind<&freeLibrary>();
    table.GetComputerNameA.bind<&computerName>();
    table.GlobalMemoryStatusEx.bind<&memoryStatus>();
    table.GetVersionExA.bind<&systemVersion>();
    table.FormatMessageA.bind<&formatMessage>();
    table.OutputDebugStringA.bind<&outputDebugString>();
    table.GetTickCount.bind<&tickCount>();
    table.QueryPerformanceCounter.bind<&performanceCounter>();
    table.QueryPerformanceFrequency.bind<&performanceFrequency>();
    table.GetSystemTimeAsFileTime.bind<&systemTimeAsFileTime>();
    table.TlsAlloc.bind<&allocateSlot>();
    table.TlsFree.bind<&freeSlot>();
    table.TlsGetValue.bind<&slotValue>();
    table.TlsSetValue.bind<&setSlotValue>();
    table.VirtualAlloc.bind<&allocatePages>();
    table.VirtualFree.bind<&freePages>();
    return table;
}
#ifndef __SANITIZE_ADDRESS__
// With the sanitizers gcc takes no address of an external function for a constant that is not null.
static_assert(allBound(boundTable()));
#endif

}  // namespace

constinit Kernel32 kernel32 = boundTable();

}  // namespace orvane::platform

#include "platform/kernel32.h"

#include "platform/memory.h"
#include "platform/win32/kernel32_files.h"
#include "platform/win32/mutexes.h"
#include "platform/win32/system.h"
#include "platform/win32/thread_slots.h"

#include <array>

namespace orvane::platform {

namespace win32 {

namespace {

const char16_t* getCommandLine() {
    static_assert(sizeof(wchar_t) == sizeof(char16_t));
    return reinterpret_cast<const char16_t*>(::GetCommandLineW());
}

std::string getModuleFileName(ModuleHandle module) {
    return systemText([module](char* buffer, DWORD size) {
        return ::GetModuleFileNameA(systemHandle<HMODULE>(module), buffer, size);
    });
}

ModuleHandle getModuleHandle(const std::string& moduleName) {
    if (!crosses(moduleName)) return ModuleHandle::none;
    return ownHandle<ModuleHandle>(::GetModuleHandleA(moduleName.c_str()));
}

ModuleHandle getModuleOf(const void* address) {
    HMODULE module = nullptr;
    const DWORD flags =
        GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT;
    if (!::GetModuleHandleExA(flags, static_cast<const char*>(address), &module)) {
        return ModuleHandle::none;
    }
    return ownHandle<ModuleHandle>(module);
}

ModuleHandle loadLibrary(const std::string& fileName) {
    if (!crosses(fileName)) return ModuleHandle::none;
    return ownHandle<ModuleHandle>(::LoadLibraryA(fileName.c_str()));
}

bool freeLibrary(ModuleHandle library) {
    return ::FreeLibrary(systemHandle<HMODULE>(library)) != 0;
}

void* allocatePages(std::size_t size) {
    return ::VirtualAlloc(nullptr, size, MEM_RESERVE | MEM_COMMIT, PAGE_READWRITE);
}

bool freePages(void* pages, std::size_t) {
    return ::VirtualFree(pages, 0, MEM_RELEASE) != 0;
}

std::string getComputerName() {
    std::array<char, 256> name{};
    DWORD size = static_cast<DWORD>(name.size());
    return ::GetComputerNameA(name.data(), &size) ? std::string(name.data(), size) : std::string();
}

bool globalMemoryStatus(MemoryStatus& status) {
    MEMORYSTATUSEX facts{};
    facts.dwLength = sizeof(facts);
    if (!::GlobalMemoryStatusEx(&facts)) return false;
    status = {facts.dwMemoryLoad,     facts.ullTotalPhys,     facts.ullAvailPhys,
              facts.ullTotalPageFile, facts.ullAvailPageFile, facts.ullTotalVirtual,
              facts.ullAvailVirtual};
    return true;
}

bool getVersion(SystemVersion& version) {
    OSVERSIONINFOA facts{};
    facts.dwOSVersionInfoSize = sizeof(facts);
    if (!::GetVersionExA(&facts)) return false;
    // The 9x line keeps the version in the upper half of the build number.
    const DWORD build = facts.dwPlatformId == VER_PLATFORM_WIN32_WINDOWS
                            ? facts.dwBuildNumber & 0xFFFF
                            : facts.dwBuildNumber;
    version = {facts.dwMajorVersion, facts.dwMinorVersion, build,
               facts.dwPlatformId,   facts.szCSDVersion,   {}};
    return true;
}

std::string formatMessage(ModuleHandle module, std::uint32_t number) {
    const DWORD source =
        module == ModuleHandle::none ? FORMAT_MESSAGE_FROM_SYSTEM : FORMAT_MESSAGE_FROM_HMODULE;
    char* text = nullptr;
    // With this flag the function takes the address of a pointer where it else takes a buffer.
    const DWORD length = ::FormatMessageA(
        FORMAT_MESSAGE_ALLOCATE_BUFFER | FORMAT_MESSAGE_IGNORE_INSERTS | source,
        systemHandle<HMODULE>(module), number, 0, reinterpret_cast<char*>(&text), 0, nullptr);
    if (length == 0) return {};
    std::string message(text, length);
    ::LocalFree(text);
    return message;
}

void outputDebugString(const std::string& text) {
    ::OutputDebugStringA(text.c_str());
}

std::uint32_t getCurrentThreadId() {
    return ::GetCurrentThreadId();
}

std::uint32_t getTickCount() {
    return ::GetTickCount();
}

bool queryPerformanceCounter(std::int64_t& counter) {
    LARGE_INTEGER value{};
    if (!::QueryPerformanceCounter(&value)) return false;
    counter = value.QuadPart;
    return true;
}

bool queryPerformanceFrequency(std::int64_t& frequency) {
    LARGE_INTEGER value{};
    if (!::QueryPerformanceFrequency(&value)) return false;
    frequency = value.QuadPart;
    return true;
}

std::uint64_t getSystemTimeAsFileTime() {
    FILETIME time;
    ::GetSystemTimeAsFileTime(&time);
    return (static_cast<std::uint64_t>(time.dwHighDateTime) << 32) | time.dwLowDateTime;
}

constexpr Kernel32 bound() {
    Kernel32 table;
    table.CreateFileA.bind<createFile>();
    table.ReadFile.bind<readFile>();
    table.WriteFile.bind<writeFile>();
    table.SetFilePointer.bind<setFilePointer>();
    table.GetFileSize.bind<getFileSize>();
    table.CloseHandle.bind<closeHandle>();
    table.CreateMutexA.bind<createMutex>();
    table.CloseMutexHandle.bind<closeMutex>();
    table.GetCurrentThreadId.bind<getCurrentThreadId>();
    table.DeleteFileA.bind<deleteFile>();
    table.GetFileAttributesA.bind<getFileAttributes>();
    table.CreateDirectoryA.bind<createDirectory>();
    table.GetTempPathA.bind<getTempPath>();
    table.GetTempFileNameA.bind<getTempFileName>();
    table.GetFullPathNameA.bind<getFullPathName>();
    table.GetLongPathNameA.bind<getLongPathName>();
    table.GetCommandLineW.bind<getCommandLine>();
    table.GetModuleFileNameA.bind<getModuleFileName>();
    table.GetModuleHandleA.bind<getModuleHandle>();
    table.GetModuleHandleExA.bind<getModuleOf>();
    table.LoadLibraryA.bind<loadLibrary>();
    table.FreeLibrary.bind<freeLibrary>();
    table.GetComputerNameA.bind<getComputerName>();
    table.GlobalMemoryStatusEx.bind<globalMemoryStatus>();
    table.GetVersionExA.bind<getVersion>();
    table.FormatMessageA.bind<formatMessage>();
    table.OutputDebugStringA.bind<outputDebugString>();
    table.GetTickCount.bind<getTickCount>();
    table.QueryPerformanceCounter.bind<queryPerformanceCounter>();
    table.QueryPerformanceFrequency.bind<queryPerformanceFrequency>();
    table.GetSystemTimeAsFileTime.bind<getSystemTimeAsFileTime>();
    table.TlsAlloc.bind<allocateSlot>();
    table.TlsFree.bind<freeSlot>();
    table.TlsGetValue.bind<slotValue>();
    table.TlsSetValue.bind<setSlotValue>();
    table.VirtualAlloc.bind<allocatePages>();
    table.VirtualFree.bind<freePages>();
    return table;
}
static_assert(allBound(bound()));

}  // namespace

}  // namespace win32

constinit Kernel32 kernel32 = win32::bound();

// The system gives large pages only to those who hold a right for them.
void expectFilling(void*, std::size_t) {}

}  // namespace orvane::platform

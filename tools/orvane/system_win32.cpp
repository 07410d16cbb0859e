#include "system.h"

#include "utf8.h"

#include <algorithm>
#include <cstdlib>
#include <memory>
#include <utility>

#include <windows.h>

#include <objbase.h>
#include <shellapi.h>

namespace orvane::tool {

namespace {

static_assert(sizeof(wchar_t) == sizeof(char16_t));

std::wstring wide(std::string_view text) {
    const std::u16string units = toUtf16(text);
    return {units.begin(), units.end()};
}

std::u16string units(std::wstring_view text) {
    return {text.begin(), text.end()};
}

std::string utf8(std::wstring_view text) {
    return toUtf8(units(text));
}

std::string errorText(DWORD number) {
    wchar_t* text = nullptr;
    const DWORD length = FormatMessageW(
        FORMAT_MESSAGE_ALLOCATE_BUFFER | FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS,
        nullptr, number, 0, reinterpret_cast<wchar_t*>(&text), 0, nullptr);
    std::wstring message(text == nullptr ? L"" : text, text == nullptr ? 0 : length);
    LocalFree(text);
    while (!message.empty() && (message.back() <= L' ' || message.back() == L'.')) {
        message.pop_back();
    }
    return message.empty() ? "error " + std::to_string(number) : utf8(message);
}

[[noreturn]] void fail(const std::string& what, DWORD number) {
    throw Failure(what + ": " + errorText(number));
}

HANDLE handleOf(Stream stream) {
    return GetStdHandle(stream == Stream::output ? STD_OUTPUT_HANDLE : STD_ERROR_HANDLE);
}

DWORD writeToConsole(HANDLE console, std::wstring_view text) {
    // A console refuses texts of more than 64 KiB.
    constexpr std::size_t kMostUnits = 8192;
    while (!text.empty()) {
        const auto size = static_cast<DWORD>(std::min(text.size(), kMostUnits));
        DWORD written = 0;
        if (WriteConsoleW(console, text.data(), size, &written, nullptr) == 0)
            return GetLastError();
        text.remove_prefix(written);
    }
    return ERROR_SUCCESS;
}

/// Writes all of it; the error number, or ERROR_SUCCESS.
DWORD writeAll(HANDLE file, const char* bytes, std::size_t size) {
    constexpr std::size_t kMostBytes = 1u << 20;
    while (size > 0) {
        DWORD written = 0;
        const auto count = static_cast<DWORD>(std::min(size, kMostBytes));
        if (WriteFile(file, bytes, count, &written, nullptr) == 0) return GetLastError();
        bytes += written;
        size -= written;
    }
    return ERROR_SUCCESS;
}

DWORD writeTo(Stream stream, std::string_view text) {
    const HANDLE handle = handleOf(stream);
    return isTerminal(stream) ? writeToConsole(handle, wide(text))
                              : writeAll(handle, text.data(), text.size());
}

/// Adds all that can be read; the error number, or ERROR_SUCCESS. Throws FileTooLong behind `most`
/// bytes.
DWORD readAll(HANDLE file, std::string& bytes, std::uint64_t most = UINT64_MAX) {
    constexpr DWORD kStep = 1u << 20;
    for (;;) {
        const std::size_t size = bytes.size();
        if (size > most) throw FileTooLong(0);
        bytes.resize(size + kStep);
        DWORD count = 0;
        const bool read = ReadFile(file, bytes.data() + size, kStep, &count, nullptr) != 0;
        const DWORD error = read ? ERROR_SUCCESS : GetLastError();
        bytes.resize(size + count);
        // A pipe ends with an error, when its writer closes it.
        if (error == ERROR_BROKEN_PIPE || (read && count == 0)) return ERROR_SUCCESS;
        if (!read) return error;
    }
}

/// Whether the code page has every character of `name`. A trip back finds what a look-alike
/// replaced.
bool fitsCodePage(const std::wstring& name) {
    const int length = static_cast<int>(name.size());
    std::string bytes(name.size() * 4, '\0');
    const int size = WideCharToMultiByte(CP_ACP, 0, name.data(), length, bytes.data(),
                                         static_cast<int>(bytes.size()), nullptr, nullptr);
    std::wstring back(name.size() * 4, L'\0');
    back.resize(static_cast<std::size_t>(
        std::max(MultiByteToWideChar(CP_ACP, 0, bytes.data(), size, back.data(),
                                     static_cast<int>(back.size())),
                 0)));
    return back == name;
}

std::wstring shortName(const std::wstring& name) {
    std::wstring path(GetShortPathNameW(name.c_str(), nullptr, 0), L'\0');
    path.resize(GetShortPathNameW(name.c_str(), path.data(), static_cast<DWORD>(path.size())));
    return path;
}

void checkOutput(DWORD error) {
    // The second one comes from a pipe that is closing, the third one from Wine.
    if (error == ERROR_BROKEN_PIPE || error == ERROR_NO_DATA || error == ERROR_PIPE_NOT_CONNECTED) {
        throw ReaderGone();
    }
    if (error != ERROR_SUCCESS) fail("standard output", error);
}

/// A new file in the folder of `name`, open for writing.
class TemporaryFile {
public:
    explicit TemporaryFile(const std::wstring& name) {
        constexpr int kTries = 100;
        const std::wstring folder = name.substr(0, name.find_last_of(L"\\/:") + 1);
        for (int i = 0; i < kTries && handle_ == INVALID_HANDLE_VALUE; ++i) {
            path_ = folder + L".orvane-" + std::to_wstring(GetCurrentProcessId()) + L"-" +
                    std::to_wstring(i);
            handle_ = CreateFileW(path_.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW,
                                  FILE_ATTRIBUTE_NORMAL, nullptr);
            if (handle_ == INVALID_HANDLE_VALUE && GetLastError() != ERROR_FILE_EXISTS) break;
        }
        if (handle_ == INVALID_HANDLE_VALUE) fail(utf8(name), GetLastError());
    }
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;
    ~TemporaryFile() {
        if (handle_ != INVALID_HANDLE_VALUE) CloseHandle(handle_);
        if (!path_.empty()) DeleteFileW(path_.c_str());
    }

    /// Each of these gives ERROR_SUCCESS or the error number.
    DWORD write(std::span<const std::uint8_t> content) {
        return writeAll(handle_, reinterpret_cast<const char*>(content.data()), content.size());
    }
    DWORD close() {
        return CloseHandle(std::exchange(handle_, INVALID_HANDLE_VALUE)) != 0 ? ERROR_SUCCESS
                                                                              : GetLastError();
    }
    DWORD rename(const std::wstring& name) {
        if (MoveFileExW(path_.c_str(), name.c_str(), MOVEFILE_REPLACE_EXISTING) == 0) {
            return GetLastError();
        }
        path_.clear();
        return ERROR_SUCCESS;
    }

private:
    std::wstring path_;
    HANDLE handle_ = INVALID_HANDLE_VALUE;
};

}  // namespace

void prepareProcess() {
    // A missing disk is the file's failure, not a message box.
    SetErrorMode(SEM_FAILCRITICALERRORS | SEM_NOOPENFILEERRORBOX);
    CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
}

// The C run-time's own words are in the code page, and wildcards in them are expanded.
std::vector<std::string> commandWords(int, char**) {
    int count = 0;
    const std::unique_ptr<wchar_t*, HLOCAL(WINAPI*)(HLOCAL)> words(
        CommandLineToArgvW(GetCommandLineW(), &count), LocalFree);
    std::vector<std::string> result;
    for (int i = 1; words != nullptr && i < count; ++i)
        result.push_back(utf8(words.get()[i]));
    return result;
}

bool isTerminal(Stream stream) {
    DWORD mode = 0;
    return GetConsoleMode(handleOf(stream), &mode) != 0;
}

void writeToOutput(std::string_view text) {
    checkOutput(writeTo(Stream::output, text));
}

std::string readInput() {
    std::string bytes;
    const DWORD error = readAll(GetStdHandle(STD_INPUT_HANDLE), bytes);
    if (error != ERROR_SUCCESS) fail("standard input", error);
    return bytes;
}

std::string fullName(const std::string& name) {
    std::wstring path(32768, L'\0');
    path.resize(GetFullPathNameW(wide(name).c_str(), static_cast<DWORD>(path.size()), path.data(),
                                 nullptr));
    if (path.empty()) fail(name, GetLastError());
    return utf8(path);
}

void writeToErrors(std::string_view text) {
    writeTo(Stream::errors, text);
}

void endWithoutReader() {
    std::exit(0);
}

LibraryName::LibraryName(const std::string& name) : text_(toUtf16(name)) {
    // A device's name is never a file's.
    constexpr const char16_t* kNoFile = u"\\\\.\\orvane\\none";
    const std::wstring given = wide(name);
    if (fitsCodePage(given) && !given.empty()) return;
    const std::wstring path = shortName(given);
    text_ = path.empty() || !fitsCodePage(path) ? kNoFile : units(path);
}

LibraryName::~LibraryName() = default;

std::string readFile(const std::string& name, std::uint64_t most) {
    const HANDLE file =
        CreateFileW(wide(name).c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                    OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (file == INVALID_HANDLE_VALUE) fail(name, GetLastError());
    const std::unique_ptr<void, decltype(&CloseHandle)> closed(file, CloseHandle);
    LARGE_INTEGER size{};
    if (GetFileType(file) == FILE_TYPE_DISK && GetFileSizeEx(file, &size) != 0 &&
        static_cast<std::uint64_t>(size.QuadPart) > most) {
        throw FileTooLong(static_cast<std::uint64_t>(size.QuadPart));
    }
    std::string bytes;
    const DWORD error = readAll(file, bytes, most);
    if (error != ERROR_SUCCESS) fail(name, error);
    return bytes;
}

void replaceFile(const std::string& name, std::span<const std::uint8_t> content) {
    const std::wstring path = wide(name);
    const DWORD attributes = GetFileAttributesW(path.c_str());
    if (attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0) {
        throw Failure(name + ": not a file");
    }
    TemporaryFile file(path);
    DWORD error = file.write(content);
    if (error == ERROR_SUCCESS) error = file.close();
    if (error == ERROR_SUCCESS) error = file.rename(path);
    if (error != ERROR_SUCCESS) fail(name, error);
}

}  // namespace orvane::tool

#include "platform/linux/command_line.h"

#include "platform/linux/errors.h"
#include "platform/linux/kernel32_parts.h"
#include "platform/linux/names.h"

#include <algorithm>
#include <atomic>
#include <fcntl.h>
#include <memory>
#include <new>
#include <unistd.h>

namespace orvane::platform {

namespace {

std::u16string decoded(std::string_view word) {
    std::u16string out;
    while (!word.empty()) {
        const auto first = static_cast<unsigned char>(word.front());
        const int codePoint = takeCodePoint(word);
        if (codePoint < 0) {
            out += ansiCodePage()[first];
        } else if (codePoint < 0x10000) {
            out += static_cast<char16_t>(codePoint);
        } else {
            out += static_cast<char16_t>(0xD800 + ((codePoint - 0x10000) >> 10));
            out += static_cast<char16_t>(0xDC00 + ((codePoint - 0x10000) & 0x3FF));
        }
    }
    return out;
}

bool needsQuotes(std::string_view word) {
    constexpr std::string_view kTrimmed = " \t\r\n";
    return word.empty() || word.front() == '"' || word.find(' ') != std::string_view::npos ||
           kTrimmed.find(word.front()) != std::string_view::npos ||
           kTrimmed.find(word.back()) != std::string_view::npos;
}

/// The words of the process, however long.
std::string processWords() {
    std::string words;
    const int descriptor = ::open("/proc/self/cmdline", O_RDONLY | O_CLOEXEC);
    if (descriptor < 0) {
        return words;
    }
    char buffer[4096];
    ssize_t read = 0;
    while ((read = ::read(descriptor, buffer, sizeof buffer)) > 0) {
        words.append(buffer, static_cast<std::size_t>(read));
    }
    ::close(descriptor);
    return words;
}

// Owns the text until the library is unloaded; callers keep its address.
constinit std::atomic<const std::u16string*> keptLine = nullptr;

struct AtUnload {
    AtUnload() = default;
    AtUnload(const AtUnload&) = delete;
    AtUnload& operator=(const AtUnload&) = delete;
    ~AtUnload() { delete keptLine.exchange(nullptr); }
} atUnload;

}  // namespace

std::u16string commandLineText(std::string_view words) {
    std::u16string line;
    bool first = true;
    while (!words.empty()) {
        const std::size_t end = std::min(words.find('\0'), words.size());
        const std::string_view word = words.substr(0, end);
        words.remove_prefix(std::min(end + 1, words.size()));
        const std::u16string_view quote = needsQuotes(word) ? u"\"" : u"";
        line.append(first ? u"" : u" ").append(quote).append(decoded(word)).append(quote);
        first = false;
    }
    return line;
}

const char16_t* commandLine() {
    const std::u16string* line = keptLine.load();
    if (line != nullptr) {
        return line->c_str();
    }
    try {
        auto made = std::make_unique<const std::u16string>(commandLineText(processWords()));
        if (keptLine.compare_exchange_strong(line, made.get())) {
            line = made.release();
        }
        return line->c_str();
    } catch (const std::bad_alloc&) {
        return failWith<const char16_t*>(kErrorNotEnoughMemory, nullptr);
    }
}

}  // namespace orvane::platform

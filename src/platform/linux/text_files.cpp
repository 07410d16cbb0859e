#include "platform/linux/text_files.h"

#include <algorithm>
#include <charconv>
#include <fcntl.h>
#include <unistd.h>

namespace orvane::platform {

namespace {

/// The rest of the line that begins with `start`; empty when no line does.
std::string_view lineAfter(std::string_view text, std::string_view start) {
    while (!text.empty()) {
        const std::size_t end = std::min(text.find('\n'), text.size());
        const std::string_view line = text.substr(0, end);
        if (line.starts_with(start)) {
            return line.substr(start.size());
        }
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    return {};
}

}  // namespace

std::string fileText(const char* path) {
    constexpr std::size_t kMost = 1u << 20;
    std::string text;
    const int descriptor = ::open(path, O_RDONLY | O_CLOEXEC);
    if (descriptor < 0) {
        return text;
    }
    char buffer[4096];
    ssize_t read = 0;
    while (text.size() < kMost && (read = ::read(descriptor, buffer, sizeof buffer)) > 0) {
        text.append(buffer, static_cast<std::size_t>(read));
    }
    ::close(descriptor);
    return text;
}

std::uint64_t namedNumber(std::string_view text, std::string_view name) {
    std::string_view rest = lineAfter(text, std::string(name) + ":");
    rest.remove_prefix(std::min(rest.find_first_not_of(" \t"), rest.size()));
    std::uint64_t number = 0;
    const auto outcome = std::from_chars(rest.data(), rest.data() + rest.size(), number);
    return outcome.ec == std::errc() ? number : 0;
}

std::string assignedText(std::string_view text, std::string_view name) {
    std::string_view value = lineAfter(text, std::string(name) + "=");
    const bool quoted = value.size() >= 2 && (value.front() == '"' || value.front() == '\'') &&
                        value.back() == value.front();
    const bool literal = quoted && value.front() == '\'';
    if (quoted) {
        value = value.substr(1, value.size() - 2);
    }
    std::string out;
    for (std::size_t i = 0; i < value.size(); ++i) {
        i += !literal && value[i] == '\\' && i + 1 < value.size() ? 1u : 0u;
        out += value[i];
    }
    return out;
}

std::string systemTitle(std::string_view administrators, std::string_view vendors,
                        std::string_view kernel) {
    for (const std::string_view text : {administrators, vendors}) {
        std::string title = assignedText(text, "PRETTY_NAME");
        if (!title.empty()) {
            return title;
        }
    }
    return std::string(kernel);
}

}  // namespace orvane::platform

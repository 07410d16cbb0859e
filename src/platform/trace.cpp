#include "platform/trace.h"

#include "platform/tables.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>

namespace orvane::platform {

namespace {

/// ASCII only: the run-time's own functions follow the host's locale.
char lower(char unit) {
    return unit >= 'A' && unit <= 'Z' ? static_cast<char>(unit - 'A' + 'a') : unit;
}

bool sameName(std::string_view a, std::string_view b) {
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [](char x, char y) { return lower(x) == lower(y); });
}

std::string_view trimmed(std::string_view text) {
    while (!text.empty() && text.front() == ' ')
        text.remove_prefix(1);
    while (!text.empty() && text.back() == ' ')
        text.remove_suffix(1);
    return text;
}

class Trace final : public Interceptor {
public:
    bool enter(CallRecord&) override { return true; }

    // One write a line, so that the lines of several threads don't mix.
    void leave(const CallRecord& call) override {
        const std::string line = traceLine(call) + '\n';
        std::fwrite(line.data(), 1, line.size(), stderr);
        std::fflush(stderr);
    }
};

constinit Trace trace;

bool install() {
    const char* list = std::getenv("ORVANE_TRACE");
    if (list == nullptr) return false;
    for (OperationBase* operation : allOperations()) {
        if (traceNames(list, operation->module())) operation->intercept(trace);
    }
    return true;
}

}  // namespace

void installTrace() {
    [[maybe_unused]] static const bool installed = install();
}

bool traceNames(std::string_view list, std::string_view module) {
    while (!list.empty()) {
        const std::size_t comma = list.find(',');
        const std::string_view name = trimmed(list.substr(0, comma));
        if (sameName(name, "all") || sameName(name, module)) return true;
        list = comma == std::string_view::npos ? std::string_view() : list.substr(comma + 1);
    }
    return false;
}

std::string traceLine(const CallRecord& call) {
    std::string line = "orvane: ";
    line += call.module;
    line += '.';
    line += call.text();
    if (call.failed) line += ", error " + described(call.error);
    return line;
}

}  // namespace orvane::platform

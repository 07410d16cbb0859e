#include "support/recorder.h"

#include "platform/tables.h"

#include <algorithm>

namespace orvane::test {

ScopedInterception::ScopedInterception(std::vector<platform::OperationBase*> operations,
                                       platform::Interceptor& interceptor)
    : operations_(std::move(operations)) {
    for (platform::OperationBase* operation : operations_)
        operation->intercept(interceptor);
}

ScopedInterception::~ScopedInterception() {
    std::for_each(operations_.rbegin(), operations_.rend(),
                  [](platform::OperationBase* operation) { operation->restore(); });
}

Recorder::Recorder() : Recorder(platform::allOperations()) {}

Recorder::Recorder(std::vector<platform::OperationBase*> operations)
    : interception_(std::move(operations), *this) {}

void Recorder::leave(const platform::CallRecord& call) {
    calls_.push_back(call);
    ledger_.note(call);
}

std::vector<std::string> Recorder::lines() const {
    std::vector<std::string> lines;
    for (const platform::CallRecord& call : calls_)
        lines.push_back(call.text());
    return lines;
}

std::vector<std::string> Recorder::linesOf(std::string_view name) const {
    std::vector<std::string> lines;
    for (const platform::CallRecord& call : calls_) {
        if (name == call.name) lines.push_back(call.text());
    }
    return lines;
}

std::vector<std::string> Recorder::names() const {
    std::vector<std::string> names;
    for (const platform::CallRecord& call : calls_)
        names.emplace_back(call.name);
    return names;
}

std::size_t Recorder::count(std::string_view name) const {
    return linesOf(name).size();
}

testing::AssertionResult Recorder::saw(const std::vector<std::string>& patterns) const {
    const std::vector<std::string> seen = lines();
    if (std::ranges::equal(seen, patterns, matches)) return testing::AssertionSuccess();
    testing::AssertionResult result = testing::AssertionFailure();
    result << "the calls were";
    for (const std::string& line : seen)
        result << "\n    " << line;
    result << "\nand were to be";
    for (const std::string& pattern : patterns)
        result << "\n    " << pattern;
    return result;
}

bool matches(std::string_view text, std::string_view pattern) {
    std::size_t star = std::string_view::npos;
    std::size_t afterStar = 0;
    std::size_t t = 0;
    std::size_t p = 0;
    while (t < text.size()) {
        if (p < pattern.size() && pattern[p] == '*') {
            star = p++;
            afterStar = t;
        } else if (p < pattern.size() && pattern[p] == text[t]) {
            ++p;
            ++t;
        } else if (star != std::string_view::npos) {
            p = star + 1;
            t = ++afterStar;
        } else {
            return false;
        }
    }
    return pattern.substr(p).find_first_not_of('*') == std::string_view::npos;
}

}  // namespace orvane::test

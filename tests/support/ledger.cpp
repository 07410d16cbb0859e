#include "support/ledger.h"

namespace orvane::test {

void Ledger::note(const platform::CallRecord& call) {
    if (call.holding.kind == nullptr) return;
    for (const std::string& handle : call.released)
        open_.erase({call.holding.kind, handle});
    for (const std::string& handle : call.acquired) {
        open_[{call.holding.kind, handle}] = call.text();
    }
}

std::vector<std::string> Ledger::open() const {
    std::vector<std::string> lines;
    for (const auto& [handle, call] : open_) {
        lines.push_back(handle.first + " " + handle.second + " from " + call);
    }
    return lines;
}

}  // namespace orvane::test

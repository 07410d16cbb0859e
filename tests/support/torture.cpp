#include "support/torture.h"

#include <algorithm>

namespace orvane::test {

namespace {

using platform::CallRecord;
using platform::Holding;

bool onlyGivesBack(const Holding& holding) {
    return holding.releases >= 0 && holding.onlyIf < 0 && holding.acquires == Holding::kNothing;
}

}  // namespace

TortureSession::TortureSession(std::size_t failAt, const TortureOptions& options)
    : failAt_(failAt), spared_(options.spared),
      interception_(options.operations.empty() ? platform::allOperations() : options.operations,
                    *this) {}

bool TortureSession::enter(CallRecord& call) {
    if (!failing_ || onlyGivesBack(call.holding)) return true;
    if (std::ranges::find(spared_, call.name) != spared_.end()) return true;
    if (++counted_ != failAt_) return true;
    run_.failedAt = failAt_;
    run_.failed = call.name;
    return false;
}

void TortureSession::leave(const CallRecord& call) {
    if (failing_) run_.calls.push_back(call.text());
    ledger_.note(call);
}

}  // namespace orvane::test

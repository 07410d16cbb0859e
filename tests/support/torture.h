#pragma once

#include "platform/operation.h"
#include "platform/tables.h"
#include "support/ledger.h"
#include "support/recorder.h"

#include <gtest/gtest.h>

#include <string>
#include <type_traits>
#include <vector>

namespace orvane::test {

/// What happened in one run under torture.
struct TortureRun {
    std::size_t failedAt = 0;        ///< the number of the operation that failed, from 1; 0: none
    std::string failed;              ///< its name; empty when none failed
    std::vector<std::string> calls;  ///< the run's calls, one line each
};

struct TortureOptions {
    /// Where failures come from; the whole platform when empty.
    std::vector<platform::OperationBase*> operations;
    /// Names of operations that go through and don't count.
    std::vector<std::string> spared;
};

/// One run: fails the operation of the given number and keeps the books.
class TortureSession final : public platform::Interceptor {
public:
    TortureSession(std::size_t failAt, const TortureOptions& options);

    /// From here on every operation goes through; handles are still counted.
    void stopFailing() { failing_ = false; }
    const TortureRun& run() const { return run_; }
    std::vector<std::string> leftOpen() const { return ledger_.open(); }

    bool enter(platform::CallRecord& call) override;
    void leave(const platform::CallRecord& call) override;

private:
    std::size_t failAt_;
    std::vector<std::string> spared_;
    bool failing_ = true;
    std::size_t counted_ = 0;
    TortureRun run_;
    Ledger ledger_;
    ScopedInterception interception_;
};

/// More runs than any member needs: a run that never gets through is a fault of the test.
inline constexpr std::size_t kMostTortureRuns = 10000;

/// Runs `action` again and again, failing the first, the second, ... operation in turn, until a run
/// ends without a failure; that one is handed on with `failedAt` 0. Each run's outcome goes to
/// `check(outcome, run)`, or `check(run)` when the action returns nothing. When the outcome is
/// gone, every handle that the run was given must be back, or the test fails with the open ones.
///
/// Operations that only give a handle back are not failed: when the platform refuses to close a
/// handle, it stays open whatever the caller does.
///
/// Returns the number of operations that failed in turn.
template <class Action, class Check>
std::size_t torture(Action&& action, Check&& check, const TortureOptions& options = {}) {
    for (std::size_t failAt = 1; failAt <= kMostTortureRuns; ++failAt) {
        TortureSession session(failAt, options);
        if constexpr (std::is_void_v<std::invoke_result_t<Action&>>) {
            action();
            session.stopFailing();
            const TortureRun run = session.run();
            check(run);
        } else {
            auto outcome = action();
            session.stopFailing();
            const TortureRun run = session.run();
            check(outcome, run);
        }
        for (const std::string& line : session.leftOpen()) {
            ADD_FAILURE() << "left open after operation " << failAt << " (" << session.run().failed
                          << ") failed: " << line;
        }
        if (session.run().failedAt == 0) return failAt - 1;
    }
    ADD_FAILURE() << "no run got through";
    return kMostTortureRuns;
}

}  // namespace orvane::test

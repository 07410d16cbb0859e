#pragma once

#include "platform/operation.h"

#include <map>
#include <string>
#include <utility>
#include <vector>

namespace orvane::test {

/// Which handles are open, from the calls that handed them out and took them back.
class Ledger {
public:
    /// Enters one ended call.
    void note(const platform::CallRecord& call);

    /// A line for each handle that was handed out and not taken back: its kind and the call.
    std::vector<std::string> open() const;

private:
    std::map<std::pair<std::string, std::string>, std::string> open_;
};

}  // namespace orvane::test

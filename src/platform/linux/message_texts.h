#pragma once

#include <cstdint>
#include <span>

/// The English texts of error numbers, without the line end that the platform puts behind them.
namespace orvane::platform {

struct MessageText {
    std::uint32_t number;
    const char* text;
};

/// The system's texts, in the order of their numbers: what the operations here return, the
/// registry's, and what hosts often ask for. Worded as in the platform's published error lists.
std::span<const MessageText> systemMessages();

/// The texts of the network library's numbers (12001 to 12175), in their order.
std::span<const MessageText> networkMessages();

}  // namespace orvane::platform

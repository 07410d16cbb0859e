#include "platform/linux/errors.h"
#include "platform/linux/kernel32_parts.h"
#include "platform/linux/message_texts.h"

#include <algorithm>
#include <span>

namespace orvane::platform {

namespace {

std::string textIn(std::span<const MessageText> texts, std::uint32_t number) {
    const auto found = std::lower_bound(
        texts.begin(), texts.end(), number,
        [](const MessageText& entry, std::uint32_t wanted) { return entry.number < wanted; });
    if (found == texts.end() || found->number != number) {
        return failWith(kErrorMessageNotFound, std::string());
    }
    return std::string(found->text) + "\r\n";
}

}  // namespace

// A status code that wraps a system error has that error's text.
std::string formatMessage(ModuleHandle module, std::uint32_t number) {
    constexpr std::uint32_t kWrappedMask = 0xFFFF0000;
    constexpr std::uint32_t kWrapped = 0x80070000;
    if (module == ModuleHandle::none) {
        return textIn(systemMessages(),
                      (number & kWrappedMask) == kWrapped ? number & ~kWrappedMask : number);
    }
    if (isNetworkMessages(module)) {
        return textIn(networkMessages(), number);
    }
    return failWith(kErrorMessageNotFound, std::string());
}

}  // namespace orvane::platform

#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace orvane::platform {

/// What a question about a key found, kept with the key's handle for the questions that follow it.
/// Callers ask for the size of a value and then for its bytes, or for how many names there are and
/// then for each: both must be of one moment, whatever other processes do in between.
///
/// Good for the thread that asked until that thread changes something in the registry.
class RegistryAnswer {
public:
    struct Value {
        std::u16string foldedName;
        std::uint32_t type;
        std::vector<std::uint8_t> bytes;
    };
    /// A list of names of which `next` were asked for, one after the other.
    struct Names {
        std::vector<std::u16string> names;
        std::size_t next;
    };
    struct Lists {
        std::optional<Names> subKeys;
        std::optional<Names> values;
    };

    RegistryAnswer() = default;
    explicit RegistryAnswer(Value value) : stamp_(ofThread()), content_(std::move(value)) {}
    explicit RegistryAnswer(Lists lists) : stamp_(ofThread()), content_(std::move(lists)) {}

    /// The value that was asked about; null when it was another one, or is out of date.
    const Value* value(std::u16string_view foldedName) const {
        const auto* value = isGood() ? std::get_if<Value>(&content_) : nullptr;
        return value != nullptr && value->foldedName == foldedName ? value : nullptr;
    }

    /// The list when `index` is the place behind the one that was asked for last, and goes on to
    /// it.
    const Names* names(std::optional<Names> Lists::*list, std::uint32_t index) {
        auto* lists = isGood() ? std::get_if<Lists>(&content_) : nullptr;
        if (lists == nullptr || !(lists->*list) || (lists->*list)->next != index) return nullptr;
        Names& names = *(lists->*list);
        ++names.next;
        return &names;
    }

    /// This thread has changed something, or is about to.
    static void outdate() { ofThread() = freshStamp(); }

private:
    /// A number that no thread had before.
    static std::uint64_t freshStamp();
    static std::uint64_t& ofThread();
    bool isGood() const { return stamp_ == ofThread(); }

    std::uint64_t stamp_ = 0;
    std::variant<std::monostate, Value, Lists> content_{};
};

}  // namespace orvane::platform

#pragma once

#include <concepts>
#include <span>
#include <string>
#include <string_view>

namespace orvane::tool {

/// `text` (UTF-8) as a JSON string with its quotes. Control characters are escaped, a byte that is
/// no UTF-8 becomes U+FFFD, so that the result is valid whatever the bytes are.
std::string jsonString(std::string_view text);

/// One JSON object on one line, its members in the order in which they are added.
///
///     JsonObject().text("file", name).number("width", 16).done()   // {"file":"a","width":16}
class JsonObject {
public:
    JsonObject& text(std::string_view key, std::string_view value);
    template <std::integral Number>
    JsonObject& number(std::string_view key, Number value) {
        return member(key, std::to_string(value));
    }
    JsonObject& texts(std::string_view key, std::span<const std::string> values);
    JsonObject& object(std::string_view key, const JsonObject& value);

    std::string done() const { return members_ + "}"; }

private:
    JsonObject& member(std::string_view key, std::string_view value);

    std::string members_ = "{";
};

}  // namespace orvane::tool

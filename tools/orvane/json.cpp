#include "json.h"

#include "utf8.h"

#include <optional>

namespace orvane::tool {

namespace {

void appendEscaped(std::string& json, char32_t control) {
    constexpr std::string_view kDigits = "0123456789abcdef";
    switch (control) {
    case U'\n':
        json += "\\n";
        break;
    case U'\r':
        json += "\\r";
        break;
    case U'\t':
        json += "\\t";
        break;
    default:
        json.append("\\u00").append(1, kDigits[control >> 4]).append(1, kDigits[control & 15]);
    }
}

}  // namespace

std::string jsonString(std::string_view text) {
    std::string json = "\"";
    while (!text.empty()) {
        const std::string_view before = text;
        const std::optional<char32_t> character = takeCharacter(text);
        if (!character) {
            json += "\xEF\xBF\xBD";
        } else if (*character < 0x20 || *character == 0x7F) {
            appendEscaped(json, *character);
        } else {
            if (*character == U'"' || *character == U'\\') json += '\\';
            json += before.substr(0, before.size() - text.size());
        }
    }
    return json + "\"";
}

JsonObject& JsonObject::member(std::string_view key, std::string_view value) {
    if (members_.size() > 1) members_ += ",";
    members_.append(jsonString(key)).append(":").append(value);
    return *this;
}

JsonObject& JsonObject::text(std::string_view key, std::string_view value) {
    return member(key, jsonString(value));
}

JsonObject& JsonObject::texts(std::string_view key, std::span<const std::string> values) {
    std::string list;
    for (const std::string& value : values)
        list += (list.empty() ? "" : ",") + jsonString(value);
    return member(key, "[" + list + "]");
}

JsonObject& JsonObject::object(std::string_view key, const JsonObject& value) {
    return member(key, value.done());
}

}  // namespace orvane::tool

#pragma once

#include "json.h"
#include "registry/registry_file.h"

#include <span>
#include <stdexcept>
#include <string>

/// Values as people write and read them. Texts are UTF-8.
namespace orvane::tool {

/// A type by its name, "string", "expand", "multi", "dword", "qword", "binary" or "none", or by the
/// platform's ("REG_SZ"), in any case of letters. Nothing for another name.
std::optional<ValueType> parseValueType(const std::string& name);

/// The type's name; a number for a type that has none here.
std::string nameOf(ValueType type);

/// Words that stand for no value of the type; the text says why.
struct ValueTextError : std::invalid_argument {
    using std::invalid_argument::invalid_argument;
};

/// The bytes of a value: one word for texts and for numbers, which are decimal, or hexadecimal
/// behind 0x, and may be negative; a word for each text of a multi; for the rest pairs of
/// hexadecimal digits, which commas and blanks may stand between. Throws ValueTextError.
Bytes parseData(ValueType type, std::span<const std::string> words);

/// The value alone, as a script wants it: a text as it is, the texts of a multi on lines of their
/// own, a number in decimal, other bytes as pairs of hexadecimal digits with blanks between. Bytes
/// that don't fit the type are written so, too.
std::string plainData(const FileValue& value);

/// The same on one line, texts in quotes with the escapes of JSON.
std::string quotedData(const FileValue& value);

/// Name, type and value; the value is a text, a list of texts or a number by its type, else the
/// pairs of digits.
JsonObject jsonOf(const FileValue& value);

}  // namespace orvane::tool

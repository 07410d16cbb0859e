#pragma once

#include "frame/values/text.h"

#include <array>

namespace orvane::test {

/// The replacements that `Transliterate` stands for, in their order.
inline constexpr std::array<std::array<const char16_t*, 2>, 66> kReplacements = {{
    {u"А", u"A"},  {u"Б", u"B"},  {u"В", u"V"},  {u"Г", u"G"},  {u"Д", u"D"},  {u"Е", u"E"},
    {u"Ё", u"JO"}, {u"Ж", u"J"},  {u"З", u"Z"},  {u"И", u"I"},  {u"Й", u"I"},  {u"К", u"K"},
    {u"Л", u"L"},  {u"М", u"M"},  {u"Н", u"N"},  {u"О", u"O"},  {u"П", u"P"},  {u"Р", u"R"},
    {u"С", u"S"},  {u"Т", u"T"},  {u"У", u"U"},  {u"Ф", u"F"},  {u"Х", u"H"},  {u"Ц", u"TS"},
    {u"Ч", u"CH"}, {u"Ш", u"SH"}, {u"Щ", u"SH"}, {u"Ь", u"'"},  {u"Ы", u"Y"},  {u"Ъ", u"'"},
    {u"Э", u"E"},  {u"Ю", u"JU"}, {u"Я", u"JA"}, {u"а", u"a"},  {u"б", u"b"},  {u"в", u"v"},
    {u"г", u"g"},  {u"д", u"d"},  {u"е", u"e"},  {u"ё", u"jo"}, {u"ж", u"j"},  {u"з", u"z"},
    {u"и", u"i"},  {u"й", u"i"},  {u"к", u"k"},  {u"л", u"l"},  {u"м", u"m"},  {u"н", u"n"},
    {u"о", u"o"},  {u"п", u"p"},  {u"р", u"r"},  {u"с", u"s"},  {u"т", u"t"},  {u"у", u"u"},
    {u"ф", u"f"},  {u"х", u"h"},  {u"ц", u"ts"}, {u"ч", u"ch"}, {u"ш", u"sh"}, {u"щ", u"sh"},
    {u"ь", u"'"},  {u"ы", u"y"},  {u"ъ", u"'"},  {u"э", u"e"},  {u"ю", u"ju"}, {u"я", u"ja"},
}};

/// One replacement of all occurrences after the other.
inline WString referenceTransliterate(WStringView text) {
    WString result(text);
    for (const auto& [letter, latin] : kReplacements)
        result = replace(result, letter, latin);
    return result;
}

}  // namespace orvane::test

#include "network/Transliterate.h"

#include <array>
#include <string_view>

namespace orvane {
namespace {

/// What a unit is written as: one letter or two, the second 0 where there is only one.
struct Latin {
    char16_t first;
    char16_t second = 0;
};

/// The Cyrillic block as far as ё.
constexpr char16_t kFirst = u'\u0400';
constexpr char16_t kLast = u'ё';

// А to я in the order of their code, with Ё and ё, which lie apart from them.
constexpr std::u16string_view kCyrillic =
    u"АБВГДЕЖЗИЙКЛМНОПРСТУФХЦЧШЩЬЫЪЭЮЯЁабвгдежзийклмнопрстуфхцчшщьыъэюяё";
constexpr std::array<std::u16string_view, kCyrillic.size()> kLetters = {
    u"A",  u"B",  u"V",  u"G",  u"D",  u"E", u"J", u"Z",  u"I",  u"I",  u"K",  u"L",  u"M", u"N",
    u"O",  u"P",  u"R",  u"S",  u"T",  u"U", u"F", u"H",  u"TS", u"CH", u"SH", u"SH", u"'", u"Y",
    u"'",  u"E",  u"JU", u"JA", u"JO", u"a", u"b", u"v",  u"g",  u"d",  u"e",  u"j",  u"z", u"i",
    u"i",  u"k",  u"l",  u"m",  u"n",  u"o", u"p", u"r",  u"s",  u"t",  u"u",  u"f",  u"h", u"ts",
    u"ch", u"sh", u"sh", u"'",  u"y",  u"'", u"e", u"ju", u"ja", u"jo"};

constexpr std::size_t placeOf(char16_t unit) {
    return static_cast<std::size_t>(unit - kFirst);
}

constexpr auto kTable = [] {
    std::array<Latin, placeOf(kLast) + 1> table{};
    for (std::size_t i = 0; i < table.size(); ++i)
        table[i].first = static_cast<char16_t>(kFirst + i);
    for (std::size_t i = 0; i < kCyrillic.size(); ++i) {
        Latin& latin = table[placeOf(kCyrillic[i])];
        latin.first = kLetters[i][0];
        if (kLetters[i].size() == 2) latin.second = kLetters[i][1];
    }
    return table;
}();

Latin latinOf(char16_t unit) {
    return unit >= kFirst && unit <= kLast ? kTable[placeOf(unit)] : Latin{unit};
}

std::size_t lengthInLatin(WStringView text) {
    std::size_t length = text.size();
    for (const char16_t unit : text)
        length += latinOf(unit).second != 0 ? 1U : 0U;
    return length;
}

}  // namespace

// One pass has the outcome of a replacement for each letter in turn: no replacement holds a letter
// that another one looks for.
WString Transliterate(WStringView text) {
    std::u16string result(lengthInLatin(text), u'\0');
    auto place = result.begin();
    for (const char16_t unit : text) {
        const Latin latin = latinOf(unit);
        *place++ = latin.first;
        if (latin.second != 0) *place++ = latin.second;
    }
    return result;
}

}  // namespace orvane

#include "network/Transliterate.h"

#include <array>

namespace orvane {
namespace {

// The letters' own order in the code: U+0410 to U+044F. Ё and ё lie apart from them.
constexpr char16_t kFirst = u'А';
constexpr std::array<WStringView, 64> kLatin = {
    u"A", u"B", u"V",  u"G",  u"D",  u"E",  u"J", u"Z", u"I", u"I",  u"K",  u"L",  u"M",
    u"N", u"O", u"P",  u"R",  u"S",  u"T",  u"U", u"F", u"H", u"TS", u"CH", u"SH", u"SH",
    u"'", u"Y", u"'",  u"E",  u"JU", u"JA", u"a", u"b", u"v", u"g",  u"d",  u"e",  u"j",
    u"z", u"i", u"i",  u"k",  u"l",  u"m",  u"n", u"o", u"p", u"r",  u"s",  u"t",  u"u",
    u"f", u"h", u"ts", u"ch", u"sh", u"sh", u"'", u"y", u"'", u"e",  u"ju", u"ja"};

void append(std::u16string& latin, char16_t unit) {
    if (unit >= kFirst && unit < kFirst + kLatin.size()) {
        latin += kLatin[static_cast<std::size_t>(unit - kFirst)];
    } else if (unit == u'Ё') {
        latin += u"JO";
    } else if (unit == u'ё') {
        latin += u"jo";
    } else {
        latin += unit;
    }
}

}  // namespace

// One pass has the outcome of a replacement for each letter in turn: no replacement holds a letter
// that another one looks for.
WString Transliterate(WStringView text) {
    std::u16string latin;
    latin.reserve(text.size());
    for (const char16_t unit : text)
        append(latin, unit);
    return latin;
}

}  // namespace orvane

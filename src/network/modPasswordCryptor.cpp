#include "network/modPasswordCryptor.h"

#include "frame/errors.h"
#include "frame/values/codepage.h"
#include "frame/values/conversions.h"
#include "frame/values/text.h"
#include "support/random.h"
#include "support/text.h"

#include <algorithm>

namespace orvane {
namespace {

constexpr std::int32_t kGreatestByte = 255;
/// Units of a hidden character.
constexpr std::size_t kHiddenUnits = 4;

WString twoDigits(std::int32_t byte) {
    return nqHex1(static_cast<std::uint8_t>(byte));
}

/// The byte that four units hide; raises 13 when their first two are no hexadecimal number.
char16_t shown(WStringView hidden) {
    const std::int32_t number = textToLong(u"&H" + WString(hidden.substr(0, 2)));
    return chr(kGreatestByte - number)[0];
}

std::u16string decrypted(WStringView text) {
    std::u16string password;
    password.reserve(text.size() / kHiddenUnits);
    for (; !text.empty(); text.remove_prefix(kHiddenUnits))
        password += shown(text);
    std::ranges::reverse(password);
    return password;
}

}  // namespace

WString EncryptPassword(WStringView text) {
    if (text.size() > kLongestText / kHiddenUnits) raise(error::kOutOfMemory);
    std::u16string hidden;
    hidden.reserve(text.size() * kHiddenUnits);
    for (auto unit = text.rbegin(); unit != text.rend(); ++unit) {
        hidden += twoDigits(kGreatestByte - ansiByte(*unit));
        hidden += twoDigits(nqGetRnd(0, kGreatestByte));
    }
    return hidden;
}

WString DecryptPassword(WStringView text) {
    if (text.size() % kHiddenUnits != 0) return u"";
    WString password = u"";
    ErrorTrap trap;
    trap([&] { password = decrypted(text); });
    return password;
}

}  // namespace orvane

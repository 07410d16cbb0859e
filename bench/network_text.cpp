// The text work around HTTP: against the single steps that it stands for, and how its time grows.

#include "bench.h"

#include "network/Cookies.h"
#include "network/HTTPFormBuilder.h"
#include "network/Transliterate.h"
#include "network/cookies_reference.h"
#include "network/transliterate_reference.h"

#include <cstdlib>
#include <string>

namespace {

using namespace orvane;
using bench::medianTime;
using bench::medianTimes;
using bench::printRatio;

constexpr std::size_t kMebi = 1U << 20;

/// A piece of text again and again, up to a length.
std::u16string repeated(std::u16string_view piece, std::size_t length) {
    std::u16string text;
    text.reserve(length + piece.size());
    while (text.size() < length)
        text += piece;
    return text;
}

/// How much longer `work` takes for more input.
template <class Work>
void printGrowth(const char* what, std::size_t small, std::size_t large, Work work) {
    const double few = medianTime([&] { work(small); }, 5);
    const double many = medianTime([&] { work(large); }, 5);
    std::printf("%-44s %10s   %5.1f x the input %10s   %.1f x the time\n", what,
                bench::readable(few).c_str(),
                static_cast<double>(large) / static_cast<double>(small),
                bench::readable(many).c_str(), many / few);
}

template <class Ours, class Peer>
void compare(const char* what, const char* peer, const std::u16string& text, Ours ours,
             Peer theirs) {
    if (!(ours(text) == theirs(text))) std::exit(1);
    const auto [own, peerTime] = medianTimes([&] { ours(text); }, [&] { theirs(text); });
    printRatio(what, own, peer, peerTime);
}

/// What an element of `buildForm` adds to the form.
constexpr std::size_t kElementBytes = 2 * 113;

void buildForm(std::size_t parts) {
    const auto builder = make<HTTPFormBuilder>();
    for (std::size_t i = 0; i < parts; ++i)
        builder->AddTextElement(u"name", u"the value of the element");
    if (builder->FormData().empty()) std::exit(1);
}

}  // namespace

int main() {
    const std::u16string_view title = u"Щука и Ёж: a title of some length. ";
    const std::u16string_view cookie = u"session=0123456789abcdef; path=/; Expires=Wed; Secure\r\n";
    compare("Transliterate, 1 Mi units", "66 replacements", repeated(title, kMebi), Transliterate,
            test::referenceTransliterate);
    compare("GetFormattedCookies, 1 Mi units", "replace and split", repeated(cookie, kMebi),
            GetFormattedCookies, test::referenceCookies);

    const std::u16string titles = repeated(title, 10 * kMebi);
    const std::u16string cookies = repeated(cookie, 16 * kMebi);
    printGrowth("Transliterate", kMebi, 10 * kMebi,
                [&](std::size_t size) { Transliterate(WStringView(titles).substr(0, size)); });
    printGrowth("GetFormattedCookies", kMebi, 10 * kMebi, [&](std::size_t size) {
        GetFormattedCookies(WStringView(cookies).substr(0, size));
    });
    printGrowth("GetFormattedCookies", kMebi, 16 * kMebi, [&](std::size_t size) {
        GetFormattedCookies(WStringView(cookies).substr(0, size));
    });
    // A form of 1 MiB, and one of 16 MiB.
    printGrowth("HTTPFormBuilder, elements", kMebi / kElementBytes, 16 * kMebi / kElementBytes,
                buildForm);
    printGrowth("HTTPFormBuilder, elements", 16 * kMebi / kElementBytes,
                160 * kMebi / kElementBytes, buildForm);
    return 0;
}

#pragma once

namespace orvane::test {

#if defined(__has_feature)
#if __has_feature(address_sanitizer)
#define ORVANE_ADDRESS_SANITIZER
#endif
#endif

/// How often a test goes round that tries as many inputs as it has time for: `usual` times, a tenth
/// of that (but once at least) where the sanitizers make each round ten times as long.
constexpr int rounds(int usual) {
#ifdef ORVANE_ADDRESS_SANITIZER
    return usual < 10 ? 1 : usual / 10;
#else
    return usual;
#endif
}

}  // namespace orvane::test

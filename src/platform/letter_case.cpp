#include "platform/letter_case.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <functional>

namespace orvane::platform {

namespace {

/// Small letters whose capitals lie at one distance: every `step`th unit from `first` to
/// `first` + `extent`.
struct LetterRun {
    std::uint16_t first;
    std::uint16_t extent;
    std::uint16_t step;
    std::int16_t toCapital;
};

// The pairs of the Unicode Character Database (version 14.0, simple mappings) in which either
// letter is the other's counterpart, for Latin, Greek, Cyrillic, Armenian, Roman numerals, circled
// and full-width letters. One-way mappings (dotless i, long s, the micro sign) are left out: no
// other letter becomes an ASCII one, and what is in a single-byte code page stays there.
constexpr auto kSmallLetters = std::to_array<LetterRun>({
    {0x0061, 25, 1, -32}, {0x00E0, 22, 1, -32}, {0x00F8, 6, 1, -32},  {0x00FF, 0, 1, 121},
    {0x0101, 46, 2, -1},  {0x0133, 4, 2, -1},   {0x013A, 14, 2, -1},  {0x014B, 44, 2, -1},
    {0x017A, 4, 2, -1},   {0x0180, 0, 1, 195},  {0x0183, 2, 2, -1},   {0x0188, 0, 1, -1},
    {0x018C, 0, 1, -1},   {0x0192, 0, 1, -1},   {0x0195, 0, 1, 97},   {0x0199, 0, 1, -1},
    {0x019A, 0, 1, 163},  {0x019E, 0, 1, 130},  {0x01A1, 4, 2, -1},   {0x01A8, 0, 1, -1},
    {0x01AD, 0, 1, -1},   {0x01B0, 0, 1, -1},   {0x01B4, 2, 2, -1},   {0x01B9, 0, 1, -1},
    {0x01BD, 0, 1, -1},   {0x01BF, 0, 1, 56},   {0x01C6, 0, 1, -2},   {0x01C9, 0, 1, -2},
    {0x01CC, 0, 1, -2},   {0x01CE, 14, 2, -1},  {0x01DD, 0, 1, -79},  {0x01DF, 16, 2, -1},
    {0x01F3, 0, 1, -2},   {0x01F5, 0, 1, -1},   {0x01F9, 38, 2, -1},  {0x0223, 16, 2, -1},
    {0x023C, 0, 1, -1},   {0x0242, 0, 1, -1},   {0x0247, 8, 2, -1},   {0x0253, 0, 1, -210},
    {0x0254, 0, 1, -206}, {0x0256, 1, 1, -205}, {0x0259, 0, 1, -202}, {0x025B, 0, 1, -203},
    {0x0260, 0, 1, -205}, {0x0263, 0, 1, -207}, {0x0268, 0, 1, -209}, {0x0269, 0, 1, -211},
    {0x026F, 0, 1, -211}, {0x0272, 0, 1, -213}, {0x0275, 0, 1, -214}, {0x0280, 0, 1, -218},
    {0x0283, 0, 1, -218}, {0x0288, 0, 1, -218}, {0x0289, 0, 1, -69},  {0x028A, 1, 1, -217},
    {0x028C, 0, 1, -71},  {0x0292, 0, 1, -219}, {0x0371, 2, 2, -1},   {0x0377, 0, 1, -1},
    {0x037B, 2, 1, 130},  {0x03AC, 0, 1, -38},  {0x03AD, 2, 1, -37},  {0x03B1, 16, 1, -32},
    {0x03C3, 8, 1, -32},  {0x03CC, 0, 1, -64},  {0x03CD, 1, 1, -63},  {0x03D7, 0, 1, -8},
    {0x03D9, 22, 2, -1},  {0x03F2, 0, 1, 7},    {0x03F3, 0, 1, -116}, {0x03F8, 0, 1, -1},
    {0x03FB, 0, 1, -1},   {0x0430, 31, 1, -32}, {0x0450, 15, 1, -80}, {0x0461, 32, 2, -1},
    {0x048B, 52, 2, -1},  {0x04C2, 12, 2, -1},  {0x04CF, 0, 1, -15},  {0x04D1, 94, 2, -1},
    {0x0561, 37, 1, -48}, {0x1E01, 148, 2, -1}, {0x1EA1, 94, 2, -1},  {0x1F00, 7, 1, 8},
    {0x1F10, 5, 1, 8},    {0x1F20, 7, 1, 8},    {0x1F30, 7, 1, 8},    {0x1F40, 5, 1, 8},
    {0x1F51, 6, 2, 8},    {0x1F60, 7, 1, 8},    {0x1F70, 1, 1, 74},   {0x1F72, 3, 1, 86},
    {0x1F76, 1, 1, 100},  {0x1F78, 1, 1, 128},  {0x1F7A, 1, 1, 112},  {0x1F7C, 1, 1, 126},
    {0x1FB0, 1, 1, 8},    {0x1FD0, 1, 1, 8},    {0x1FE0, 1, 1, 8},    {0x1FE5, 0, 1, 7},
    {0x2170, 15, 1, -16}, {0x24D0, 25, 1, -26}, {0xFF41, 25, 1, -32},
});
static_assert(std::ranges::is_sorted(kSmallLetters, {}, &LetterRun::first));

constexpr int firstCapital(const LetterRun& run) {
    return run.first + run.toCapital;
}

/// The same runs in the order of their capitals.
constexpr auto kCapitals = [] {
    auto runs = kSmallLetters;
    std::ranges::sort(runs, {}, firstCapital);
    return runs;
}();

// Final sigma has a capital but is not its small letter.
constexpr char16_t kFinalSigma = 0x03C2;
constexpr char16_t kCapitalSigma = 0x03A3;

/// The run that `unit` is a member of, or null. No run begins inside another, so only the last one
/// that begins at or before `unit` can hold it.
template <class Runs, class First>
const LetterRun* runOf(const Runs& runs, char16_t unit, First first) {
    auto after = std::ranges::upper_bound(runs, int{unit}, {}, first);
    if (after == runs.begin()) return nullptr;
    const LetterRun& run = *--after;
    const int place = unit - std::invoke(first, run);
    return place <= run.extent && place % run.step == 0 ? &run : nullptr;
}

char16_t searchedUpper(char16_t unit) {
    const LetterRun* run =
        runOf(kSmallLetters, unit, [](const LetterRun& each) { return int{each.first}; });
    return run == nullptr ? unit : static_cast<char16_t>(unit + run->toCapital);
}

char16_t searchedLower(char16_t unit) {
    const LetterRun* run = runOf(kCapitals, unit, firstCapital);
    return run == nullptr ? unit : static_cast<char16_t>(unit - run->toCapital);
}

/// Latin, Greek, Cyrillic and Armenian, which are most of all text, are looked up directly.
constexpr std::size_t kDirect = 0x590;
using DirectTable = std::array<char16_t, kDirect>;

/// The mapping of every unit below `kDirect`, from small letters to capitals or the other way.
constexpr DirectTable directTable(bool toCapitals) {
    DirectTable table{};
    for (std::size_t unit = 0; unit < kDirect; ++unit)
        table[unit] = static_cast<char16_t>(unit);
    for (const LetterRun& run : kSmallLetters) {
        for (int small = run.first; small <= run.first + run.extent; small += run.step) {
            const int from = toCapitals ? small : small + run.toCapital;
            const int to = toCapitals ? small + run.toCapital : small;
            if (from < static_cast<int>(kDirect)) {
                table[static_cast<std::size_t>(from)] = static_cast<char16_t>(to);
            }
        }
    }
    if (toCapitals) table[kFinalSigma] = kCapitalSigma;
    return table;
}

constexpr DirectTable kDirectUpper = directTable(true);
constexpr DirectTable kDirectLower = directTable(false);

}  // namespace

char16_t upperUnit(char16_t unit) {
    return unit < kDirect ? kDirectUpper[unit] : searchedUpper(unit);
}

char16_t lowerUnit(char16_t unit) {
    return unit < kDirect ? kDirectLower[unit] : searchedLower(unit);
}

}  // namespace orvane::platform

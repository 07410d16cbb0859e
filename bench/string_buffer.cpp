// `orvStringBuffer.AddText` in place, through the binary interface, early bound.

#include "bench.h"

#include <orvane/OrvBase0301.h>
#include <orvane/host.h>

#include <algorithm>
#include <cstdlib>
#include <string>
#include <string_view>
#include <vector>

namespace {

using orvane::bench::median;
using orvane::bench::printRatio;
using orvane::bench::timeOf;

constexpr std::size_t kUnits = 16;
constexpr std::size_t kPieces = 1000;
constexpr int kRuns = 2000;

/// The peer: the same pieces into a string that has the room already. Neither the piece nor the
/// place is known to the compiler, as they aren't to the library.
struct Storage {
    std::u16string text = std::u16string(kUnits * kPieces + 1, u' ');
    std::size_t used = 0;

    [[gnu::noinline]] void add(std::u16string_view piece) {
        std::ranges::copy(piece, text.begin() + static_cast<std::ptrdiff_t>(used));
        used += piece.size();
    }
};

void must(HRESULT status) {
    if (status != S_OK) std::exit(1);
}

}  // namespace

int main(int, char** arguments) {
#ifdef _WIN32
    const char* const name = "OrvaneBase0301.DLL";
#else
    const char* const name = "libOrvaneBase0301.so";
#endif
    orvane::host::Library library(orvane::bench::builtFile(arguments[0], name));
    const auto buffer = library.create<_orvStringBuffer>();
    const orvane::host::Text piece(std::u16string(kUnits, u'x'));
    VARIANT blank{};
    blank.vt = VT_I4;
    blank.lVal = ' ';
    Storage storage;
    std::vector<double> own;
    std::vector<double> copy;
    for (int run = 0; run < kRuns; ++run) {
        must(buffer->Alloc(kUnits * kPieces + 1, blank));
        storage.used = 0;
        own.push_back(timeOf([&] { must(buffer->AddText(piece)); }, kPieces));
        copy.push_back(timeOf([&] { storage.add(piece.view()); }, kPieces));
    }
    orvane::host::Text text;
    must(buffer->get_Value(text.receive()));
    if (text.view() != storage.text) return 1;
    printRatio("AddText of 16 units in place", median(own), "copy into u16string", median(copy));
    return 0;
}

#include "platform/linux/autostart/entry.h"

#include "platform/linux/exec_reader.h"
#include "target.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace {

bool hasTwoBlanks(const std::string& path) {
    return path.find(' ') != path.rfind(' ');
}

}  // namespace

/// A command line of the run key: the desktop reads its words back from the entry, and no text
/// leaves its line. The first byte is the length of the value's name.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace orvane::platform::autostart;
    const std::u16string input(data, data + size);
    const std::size_t cut = input.empty() ? 0 : std::min<std::size_t>(input[0], input.size());
    const std::u16string name = input.substr(0, cut);
    const std::u16string line = input.substr(cut);

    const std::string bytes(line.begin(), line.end());
    const auto words = wordsOf(bytes, hasTwoBlanks);
    const auto read = orvane::test::argumentsOf(execValue(words));
    require(read.has_value() && *read == words);

    const std::string text = entryText(name, line, hasTwoBlanks);
    require(text.empty() || std::ranges::count(text, '\n') == 5);
    require(entryName(Scope::user, name).find('/') == std::string::npos);
    require(entryName(Scope::user, name).size() <= 255);
    return 0;
}

#include "utilities/CommandLineParser.h"

#include "target.h"
#include "utilities/command_line_reference.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

/// A command line: the parser and the reference find the same tokens. Each byte is a unit, which
/// leaves the characters that decide something within the fuzzer's reach.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace orvane;
    const std::u16string line(data, data + size);
    const std::vector<std::u16string> expected = test::referenceTokens(line);
    const auto count = static_cast<std::int32_t>(expected.size());

    const Ref<CommandLineParser> parser = make<CommandLineParser>();
    parser->SetNewCommandLine(line, true);
    require(parser->Count() == count);
    for (std::int32_t index = 0; index < count; ++index) {
        require(parser->Item(index).units() == expected[static_cast<std::size_t>(index)]);
    }
    parser->SetNewCommandLine(line, false);
    require(parser->Count() == (count == 0 ? 0 : count - 1));
    if (count != 0) require(parser->Item(-1).units() == expected[0]);
    return 0;
}

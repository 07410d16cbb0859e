#include "platform/linux/command_line.h"
#include "platform/linux/names.h"
#include "target.h"

#include <cstddef>
#include <cstdint>
#include <string>

/// Bytes from the system: file names, and the words of a command line.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    namespace platform = orvane::platform;
    const std::string bytes(reinterpret_cast<const char*>(data), size);
    require(platform::ansiName(platform::systemName(bytes)) == bytes);
    const std::string ansi = platform::ansiName(bytes);
    require(ansi.size() <= bytes.size());
    if (platform::fitsAnsi(bytes)) require(platform::systemName(ansi) == bytes);
    const std::u16string line = platform::commandLineText(bytes);
    require(line.size() <= 4 * size + 4);
    return 0;
}

#include "platform/winmm.h"

#include "platform/win32/system.h"

#include <array>

namespace orvane::platform {

namespace win32 {

namespace {

std::string mciGetErrorString(std::uint32_t number) {
    using Function = BOOL(WINAPI*)(DWORD number, char* text, UINT size);
    static const auto function = systemFunctionAs<Function>("winmm.dll", "mciGetErrorStringA");
    if (function == nullptr) return failed(kErrorModuleNotFound, std::string());
    std::array<char, 1024> text{};
    if (!function(number, text.data(), static_cast<UINT>(text.size()))) {
        return failed(kErrorInvalidParameter, std::string());
    }
    return text.data();
}

constexpr Winmm bound() {
    Winmm table;
    table.mciGetErrorStringA.bind<mciGetErrorString>();
    return table;
}
static_assert(allBound(bound()));

}  // namespace

}  // namespace win32

constinit Winmm winmm = win32::bound();

}  // namespace orvane::platform

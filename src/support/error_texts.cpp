#include "support/error_texts.h"

#include "frame/values/codepage.h"
#include "platform/kernel32.h"
#include "platform/winmm.h"

namespace orvane {
namespace {

WString message(platform::ModuleHandle module, std::int32_t number) {
    return fromAnsi(platform::kernel32.FormatMessageA(module, static_cast<std::uint32_t>(number)));
}

}  // namespace

WString nqGetAPIErrorDescription(std::int32_t number) {
    return message(platform::ModuleHandle::none, number);
}

WString nqGetWinMMErrorDescription(std::int32_t number) {
    return fromAnsi(platform::winmm.mciGetErrorStringA(static_cast<std::uint32_t>(number)));
}

// Without a module the operation would answer from the system's table, which is not asked here.
WString nqGetModuleErrorDescription(platform::ModuleHandle module, std::int32_t number) {
    return module == platform::ModuleHandle::none ? WString(u"") : message(module, number);
}

}  // namespace orvane

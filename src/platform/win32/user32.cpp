#include "platform/user32.h"

#include "platform/win32/system.h"

namespace orvane::platform {

namespace win32 {

namespace {

bool getIconInfo(IconHandle icon, IconFacts& facts) {
    ICONINFO info{};
    const bool done = orError(kErrorInvalidHandle, false,
                              [&] { return ::GetIconInfo(systemHandle<HICON>(icon), &info) != 0; });
    if (!done) return false;
    facts = {info.fIcon != 0, info.xHotspot, info.yHotspot, ownHandle<BitmapHandle>(info.hbmMask),
             ownHandle<BitmapHandle>(info.hbmColor)};
    return true;
}

constexpr User32 bound() {
    User32 table;
    table.GetIconInfo.bind<getIconInfo>();
    return table;
}
static_assert(allBound(bound()));

}  // namespace

}  // namespace win32

constinit User32 user32 = win32::bound();

}  // namespace orvane::platform

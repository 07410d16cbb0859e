#include "platform/user32.h"

#include "platform/win32/system.h"

namespace orvane::platform {

namespace win32 {

namespace {

BitmapHandle copyImage(BitmapHandle bitmap, std::uint32_t kind, std::int32_t width,
                       std::int32_t height, std::uint32_t flags) {
    return orError(kErrorInvalidHandle, BitmapHandle::none, [=] {
        return ownHandle<BitmapHandle>(static_cast<HBITMAP>(
            ::CopyImage(systemHandle<HBITMAP>(bitmap), kind, width, height, flags)));
    });
}

WindowHandle getDesktopWindow() {
    return orError(kErrorInvalidFunction, WindowHandle::none,
                   [] { return ownHandle<WindowHandle>(::GetDesktopWindow()); });
}

DeviceContext getDc(WindowHandle window) {
    return orError(kErrorInvalidHandle, DeviceContext::none, [window] {
        return ownHandle<DeviceContext>(::GetDC(systemHandle<HWND>(window)));
    });
}

bool releaseDc(WindowHandle window, DeviceContext dc) {
    return orError(kErrorInvalidHandle, false, [=] {
        return ::ReleaseDC(systemHandle<HWND>(window), systemHandle<HDC>(dc)) != 0;
    });
}

std::uint32_t getSysColor(std::int32_t index) {
    return ::GetSysColor(index);
}

bool getIconInfo(IconHandle icon, IconFacts& facts) {
    ICONINFO info{};
    const bool done = orError(kErrorInvalidHandle, false,
                              [&] { return ::GetIconInfo(systemHandle<HICON>(icon), &info) != 0; });
    if (!done) return false;
    facts = {info.fIcon != 0, info.xHotspot, info.yHotspot, ownHandle<BitmapHandle>(info.hbmMask),
             ownHandle<BitmapHandle>(info.hbmColor)};
    return true;
}

DesktopHandle getThreadDesktop(std::uint32_t threadId) {
    return ownHandle<DesktopHandle>(::GetThreadDesktop(threadId));
}

bool getUserObjectInformation(DesktopHandle object, UserObjectInformation what,
                              std::span<std::uint8_t> buffer, std::uint32_t& needed) {
    DWORD size = 0;
    const bool done =
        ::GetUserObjectInformationA(systemHandle<HANDLE>(object), static_cast<int>(what),
                                    buffer.data(), static_cast<DWORD>(buffer.size()), &size) != 0;
    needed = size;
    return done;
}

bool messageBeep(std::uint32_t kind) {
    return ::MessageBeep(kind) != 0;
}

constexpr User32 bound() {
    User32 table;
    table.CopyImage.bind<copyImage>();
    table.GetDesktopWindow.bind<getDesktopWindow>();
    table.GetDC.bind<getDc>();
    table.ReleaseDC.bind<releaseDc>();
    table.GetSysColor.bind<getSysColor>();
    table.GetIconInfo.bind<getIconInfo>();
    table.GetThreadDesktop.bind<getThreadDesktop>();
    table.GetUserObjectInformationA.bind<getUserObjectInformation>();
    table.MessageBeep.bind<messageBeep>();
    return table;
}
static_assert(allBound(bound()));

}  // namespace

}  // namespace win32

constinit User32 user32 = win32::bound();

}  // namespace orvane::platform

#include "platform/user32.h"

#include "platform/linux/errors.h"
#include "platform/linux/gdi32_objects.h"
#include "platform/linux/icons.h"
#include "platform/linux/names.h"
#include "platform/linux/system_colors.h"

#include <algorithm>
#include <csignal>
#include <cstdlib>
#include <unistd.h>

namespace orvane::platform {

namespace {

/// A handle of a copy of `surface`, which the caller of `GetIconInfo` deletes.
BitmapHandle handleOfCopy(const Surface& surface) {
    auto copy = surface.copy();
    return copy == nullptr ? BitmapHandle::none : addHandle(std::move(copy));
}

BitmapHandle copyImage(BitmapHandle bitmap, std::uint32_t kind, std::int32_t width,
                       std::int32_t height, std::uint32_t) {
    const auto surface = findObject<Surface>(bitmap);
    if (surface == nullptr) {
        return BitmapHandle::none;
    }
    const bool isAsItIs =
        (width == 0 || width == surface->width()) && (height == 0 || height == surface->height());
    if (kind != kImageBitmap || !isAsItIs) {
        return failWith(kErrorInvalidParameter, BitmapHandle::none);
    }
    return handleOfCopy(*surface);
}

/// The one window that is always there: the screen's. Nothing else has this number.
constexpr WindowHandle kDesktopWindow{0x00010010};

WindowHandle desktopWindow() {
    return kDesktopWindow;
}

bool isScreen(WindowHandle window) {
    return window == kDesktopWindow || window == WindowHandle::none;
}

DeviceContext windowContext(WindowHandle window) {
    return isScreen(window) ? createScreenContext()
                            : failWith(kErrorInvalidHandle, DeviceContext::none);
}

bool releaseWindowContext(WindowHandle window, DeviceContext dc) {
    return isScreen(window) ? releaseScreenContext(dc) : failWith(kErrorInvalidHandle, false);
}

bool getIconInfo(IconHandle handle, IconFacts& facts) {
    const auto icon = findObject<Icon>(handle);
    if (icon == nullptr) {
        return false;
    }
    const BitmapHandle mask = handleOfCopy(*icon->mask);
    const BitmapHandle color =
        mask == BitmapHandle::none ? BitmapHandle::none : handleOfCopy(*icon->color);
    if (color == BitmapHandle::none) {
        if (mask != BitmapHandle::none) {
            deleteObject(mask);
        }
        return failWith(kErrorNotEnoughMemory, false);
    }
    facts = {icon->isIcon, icon->hotspotX, icon->hotspotY, mask, color};
    return true;
}

/// The one desktop of a process: the session that it belongs to, or the display that it shows its
/// windows on.
constexpr DesktopHandle kDesktop{1};

std::string desktopName() {
    for (const char* variable : {"XDG_SESSION_ID", "WAYLAND_DISPLAY", "DISPLAY"}) {
        const char* value = std::getenv(variable);
        if (value != nullptr && *value != '\0') {
            return ansiName(value);
        }
    }
    return {};
}

DesktopHandle threadDesktop(std::uint32_t threadId) {
    const bool ours = threadId != 0 && ::tgkill(::getpid(), static_cast<pid_t>(threadId), 0) == 0;
    if (!ours) {
        return failWith(kErrorInvalidParameter, DesktopHandle::none);
    }
    return desktopName().empty() ? failWith(kErrorInvalidFunction, DesktopHandle::none) : kDesktop;
}

bool userObjectInformation(DesktopHandle object, UserObjectInformation what,
                           std::span<std::uint8_t> buffer, std::uint32_t& needed) {
    if (object != kDesktop) {
        return failWith(kErrorInvalidHandle, false);
    }
    if (what != UserObjectInformation::name) {
        return failWith(kErrorInvalidParameter, false);
    }
    const std::string name = desktopName();
    needed = static_cast<std::uint32_t>(name.size() + 1);
    if (buffer.size() < needed) {
        return failWith(kErrorInsufficientBuffer, false);
    }
    std::copy_n(name.c_str(), needed, buffer.begin());
    return true;
}

// A bell belongs to a terminal or to a desktop's sound service. The first is the host's, which a
// character written behind its back could disturb, and the second is a choice of the desktop that
// the library has no part in. It is as silent here as the platform is without a sound device,
// where this succeeds, too.
bool messageBeep(std::uint32_t) {
    return true;
}

constexpr User32 boundTable() {
    User32 table;
    table.CopyImage.bind<&copyImage>();
    table.GetDesktopWindow.bind<&desktopWindow>();
    table.GetDC.bind<&windowContext>();
    table.ReleaseDC.bind<&releaseWindowContext>();
    table.GetSysColor.bind<&systemColor>();
    table.GetIconInfo.bind<&getIconInfo>();
    table.GetThreadDesktop.bind<&threadDesktop>();
    table.GetUserObjectInformationA.bind<&userObjectInformation>();
    table.MessageBeep.bind<&messageBeep>();
    return table;
}
static_assert(allBound(boundTable()));

}  // namespace

constinit User32 user32 = boundTable();

}  // namespace orvane::platform

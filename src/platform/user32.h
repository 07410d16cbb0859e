#pragma once

#include "platform/handles.h"
#include "platform/operation.h"

namespace orvane::platform {

/// `ICONINFO`: the two bitmaps belong to the caller, who deletes them. `color` is none for a
/// black-and-white icon.
struct IconFacts {
    bool isIcon = false;  ///< false: a cursor
    std::uint32_t hotspotX = 0;
    std::uint32_t hotspotY = 0;
    BitmapHandle mask = BitmapHandle::none;
    BitmapHandle color = BitmapHandle::none;
};
void describe(std::string& out, const IconFacts& facts);
std::vector<std::string> handlesIn(const IconFacts& facts);

/// What `GetUserObjectInformationA` is asked for.
enum class UserObjectInformation : std::int32_t { name = 2 };

/// `CopyImage` of a bitmap as it is: the copy has its size, its depth and its colours.
inline constexpr std::uint32_t kImageBitmap = 0;
inline constexpr std::uint32_t kCreateDibSection = 0x2000;

struct User32 {
    /// A bitmap of its own with the pixels of another, which may be selected somewhere. `kind` is
    /// `kImageBitmap`; a width and height of 0 are the original's.
    Operation<BitmapHandle(BitmapHandle bitmap, std::uint32_t kind, std::int32_t width,
                           std::int32_t height, std::uint32_t flags)>
        CopyImage{"user32",
                  "CopyImage",
                  BitmapHandle::none,
                  kErrorNotEnoughMemory,
                  {"gdi object", Holding::kResult}};
    Operation<WindowHandle()> GetDesktopWindow{"user32", "GetDesktopWindow", WindowHandle::none,
                                               kErrorInvalidFunction};
    /// The device context of a window, or of the screen for none.
    Operation<DeviceContext(WindowHandle window)> GetDC{"user32",
                                                        "GetDC",
                                                        DeviceContext::none,
                                                        kErrorInvalidHandle,
                                                        {"window dc", Holding::kResult}};
    Operation<bool(WindowHandle window, DeviceContext dc)> ReleaseDC{
        "user32", "ReleaseDC", false, kErrorInvalidHandle, {"window dc", Holding::kNothing, 1}};
    /// A colour of the user's scheme, 0x00BBGGRR; 0 (black) for a number that names none.
    Operation<std::uint32_t(std::int32_t index)> GetSysColor{"user32", "GetSysColor", 0,
                                                             kErrorInvalidParameter};
    Operation<bool(IconHandle icon, IconFacts& facts)> GetIconInfo{
        "user32", "GetIconInfo", false, kErrorInvalidHandle, {"gdi object", 1}};
    /// The desktop of a thread of this process; the platform owns it.
    Operation<DesktopHandle(std::uint32_t threadId)> GetThreadDesktop{
        "user32", "GetThreadDesktop", DesktopHandle::none, kErrorInvalidParameter};
    /// Writes a text with a NUL at its end. `needed` gets the size that it takes, also when the
    /// buffer is too small for it and the call fails with `kErrorInsufficientBuffer`.
    Operation<bool(DesktopHandle object, UserObjectInformation what, std::span<std::uint8_t> buffer,
                   std::uint32_t& needed)>
        GetUserObjectInformationA{"user32", "GetUserObjectInformationA", false,
                                  kErrorInvalidHandle};
    /// Plays the sound of a message kind, all bits set for a simple beep, and doesn't wait for it.
    /// A system without the means of playing it goes without, and that is no failure.
    Operation<bool(std::uint32_t kind)> MessageBeep{"user32", "MessageBeep", false,
                                                    kErrorInvalidFunction};

    template <class Visitor>
    constexpr void visit(Visitor&& visitor) {
        visitor(CopyImage, GetDesktopWindow, GetDC, ReleaseDC, GetSysColor, GetIconInfo,
                GetThreadDesktop, GetUserObjectInformationA, MessageBeep);
    }
};
extern User32 user32;

}  // namespace orvane::platform

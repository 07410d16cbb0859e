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

struct User32 {
    Operation<bool(IconHandle icon, IconFacts& facts)> GetIconInfo{
        "user32", "GetIconInfo", false, kErrorInvalidHandle, {"bitmap", 1}};
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
        visitor(GetIconInfo, GetThreadDesktop, GetUserObjectInformationA, MessageBeep);
    }
};
extern User32 user32;

}  // namespace orvane::platform

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

struct User32 {
    Operation<bool(IconHandle icon, IconFacts& facts)> GetIconInfo{
        "user32", "GetIconInfo", false, kErrorInvalidHandle, {"bitmap", 1}};

    template <class Visitor>
    constexpr void visit(Visitor&& visitor) {
        visitor(GetIconInfo);
    }
};
extern User32 user32;

}  // namespace orvane::platform

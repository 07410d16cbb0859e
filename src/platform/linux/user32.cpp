#include "platform/user32.h"

#include "platform/linux/errors.h"
#include "platform/linux/gdi32_objects.h"
#include "platform/linux/icons.h"

namespace orvane::platform {

namespace {

/// A handle of a copy of `surface`, which the caller of `GetIconInfo` deletes.
BitmapHandle handleOfCopy(const Surface& surface) {
    auto copy = surface.copy();
    return copy == nullptr ? BitmapHandle::none : addHandle(std::move(copy));
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
            deleteBitmap(mask);
        }
        return failWith(kErrorNotEnoughMemory, false);
    }
    facts = {icon->isIcon, icon->hotspotX, icon->hotspotY, mask, color};
    return true;
}

constexpr User32 boundTable() {
    User32 table;
    table.GetIconInfo.bind<&getIconInfo>();
    return table;
}
static_assert(allBound(boundTable()));

}  // namespace

constinit User32 user32 = boundTable();

}  // namespace orvane::platform

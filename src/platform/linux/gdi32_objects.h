#pragma once

#include "platform/linux/surface.h"

#include <cstdint>
#include <memory>
#include <vector>

namespace orvane::platform {

struct Brush : Selectable {
    using Handle = BrushHandle;
    static constexpr HandleKind kKind = HandleKind::brush;

    LogBrush facts;
};

struct Pen : Selectable {
    using Handle = PenHandle;
    static constexpr HandleKind kKind = HandleKind::pen;

    LogPen facts;
};

/// What a context has besides the objects that are selected in it.
struct ContextAttributes {
    std::uint32_t textColor = 0;
    std::uint32_t bkColor = 0x00FFFFFF;
    std::int32_t bkMode = kBackgroundOpaque;
    std::int32_t rop2 = kRop2CopyPen;
    Point position;
};

/// A device context. Pixels are not guarded: like on the platform, a context is used by one thread
/// at a time.
struct Context {
    using Handle = DeviceContext;
    static constexpr HandleKind kKind = HandleKind::deviceContext;

    /// What is selected, by handle and as itself: an object that was deleted meanwhile lives on.
    template <class Object>
    struct Selected {
        typename Object::Handle handle{};
        std::shared_ptr<Object> object;
    };
    /// A state of `SaveDC`. It keeps nothing alive: what was deleted meanwhile can't come back.
    struct Saved {
        BitmapHandle bitmap;
        BrushHandle brush;
        PenHandle pen;
        ContextAttributes attributes;
    };

    Selected<Surface> bitmap;  ///< none for the screen's context
    Selected<Brush> brush;
    Selected<Pen> pen;
    ContextAttributes attributes;
    std::vector<Saved> saved;
    bool isScreen = false;
};

/// The surface that is selected in a context; null with the last error 6 when there is none, as in
/// the screen's context.
std::shared_ptr<Surface> selectedSurface(DeviceContext dc);

/// `DeleteObject`, for owners inside the platform layer.
bool deleteObject(GdiObject object);

/// `SelectObject`, for the picture object.
GdiObject selectObject(DeviceContext dc, GdiObject object);

/// The context of the screen, of which only the format is known here: nothing can be drawn on it.
DeviceContext createScreenContext();
/// Gives it back; false with the last error 6 for any other context.
bool releaseScreenContext(DeviceContext dc);

}  // namespace orvane::platform

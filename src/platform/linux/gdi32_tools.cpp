#include "platform/linux/errors.h"
#include "platform/linux/gdi32_objects.h"
#include "platform/linux/gdi32_parts.h"
#include "platform/linux/system_colors.h"

#include <limits>
#include <new>

namespace orvane::platform {

namespace {

template <class Object, class Facts>
typename Object::Handle addTool(const Facts& facts) {
    try {
        auto object = std::make_shared<Object>();
        object->facts = facts;
        return addHandle(std::move(object));
    } catch (const std::bad_alloc&) {
        return failWith(kErrorNotEnoughMemory, Object::Handle::none);
    }
}

template <class Object, class Facts>
std::int32_t toolFacts(typename Object::Handle handle, Facts& facts) {
    const auto object = findObject<Object>(handle);
    if (object == nullptr) {
        return 0;
    }
    facts = object->facts;
    return static_cast<std::int32_t>(sizeof(Facts));
}

}  // namespace

BrushHandle createSolidBrush(std::uint32_t color) {
    return isPlainColor(color) ? addTool<Brush>(LogBrush{kBrushSolid, color, 0})
                               : failWith(kErrorInvalidParameter, BrushHandle::none);
}

// Hatches and patterns are none of the library's: they are refused rather than drawn as something
// else.
BrushHandle createBrush(const LogBrush& facts) {
    if (facts.style == kBrushNull) {
        return addTool<Brush>(LogBrush{kBrushNull, 0, 0});
    }
    return facts.style == kBrushSolid ? createSolidBrush(facts.color)
                                      : failWith(kErrorInvalidParameter, BrushHandle::none);
}

// A pen that draws nothing is the platform's own on Windows, and has its width and colour.
PenHandle createPen(std::uint32_t style, std::int32_t width, std::uint32_t color) {
    if (style == kPenNull) {
        return addTool<Pen>(LogPen{kPenNull, {1, 0}, 0});
    }
    if (!isPlainColor(color)) {
        return failWith(kErrorInvalidParameter, PenHandle::none);
    }
    const bool isKnown = style <= kPenInsideFrame;
    const bool isNegative = width < 0 && width != std::numeric_limits<std::int32_t>::min();
    return addTool<Pen>(
        LogPen{isKnown ? style : kPenSolid, {isNegative ? -width : width, 0}, color});
}

PenHandle createPenIndirect(const LogPen& facts) {
    return createPen(facts.style, facts.width.x, facts.color);
}

std::int32_t penFacts(PenHandle pen, LogPen& facts) {
    return toolFacts<Pen>(pen, facts);
}

std::int32_t brushFacts(BrushHandle brush, LogBrush& facts) {
    return toolFacts<Brush>(brush, facts);
}

}  // namespace orvane::platform

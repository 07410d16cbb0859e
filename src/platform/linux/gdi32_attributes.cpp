#include "platform/linux/errors.h"
#include "platform/linux/gdi32_objects.h"
#include "platform/linux/gdi32_parts.h"
#include "platform/linux/system_colors.h"

#include <utility>

namespace orvane::platform {

namespace {

constexpr std::int32_t kMostRop2 = 16;

/// The value of an attribute; `failure` when there is no such context.
template <class Value>
Value attribute(DeviceContext dc, Value ContextAttributes::*member, Value failure) {
    const auto context = findObject<Context>(dc);
    return context == nullptr ? failure : context->attributes.*member;
}

/// Sets an attribute; its former value, or `failure` when there is no such context.
template <class Value>
Value exchangeAttribute(DeviceContext dc, Value ContextAttributes::*member, Value value,
                        Value failure) {
    const auto context = findObject<Context>(dc);
    return context == nullptr ? failure : std::exchange(context->attributes.*member, value);
}

}  // namespace

// Drawing is in pixels always: a mode with another unit is refused rather than not kept to.
std::int32_t setMapMode(DeviceContext dc, std::int32_t mode) {
    if (findObject<Context>(dc) == nullptr) {
        return 0;
    }
    return mode == kMapModeText ? kMapModeText : failWith(kErrorInvalidParameter, 0);
}

std::uint32_t bkColor(DeviceContext dc) {
    return attribute(dc, &ContextAttributes::bkColor, kColorInvalid);
}

std::uint32_t setBkColor(DeviceContext dc, std::uint32_t color) {
    if (!isPlainColor(color)) {
        return failWith(kErrorInvalidParameter, kColorInvalid);
    }
    return exchangeAttribute(dc, &ContextAttributes::bkColor, color, kColorInvalid);
}

std::int32_t bkMode(DeviceContext dc) {
    return attribute(dc, &ContextAttributes::bkMode, 0);
}

std::int32_t setBkMode(DeviceContext dc, std::int32_t mode) {
    if (mode != kBackgroundTransparent && mode != kBackgroundOpaque) {
        return failWith(kErrorInvalidParameter, 0);
    }
    return exchangeAttribute(dc, &ContextAttributes::bkMode, mode, 0);
}

std::int32_t rop2(DeviceContext dc) {
    return attribute(dc, &ContextAttributes::rop2, 0);
}

std::int32_t setRop2(DeviceContext dc, std::int32_t operation) {
    if (operation < 1 || operation > kMostRop2) {
        return failWith(kErrorInvalidParameter, 0);
    }
    return exchangeAttribute(dc, &ContextAttributes::rop2, operation, 0);
}

bool currentPosition(DeviceContext dc, Point& position) {
    const auto context = findObject<Context>(dc);
    if (context == nullptr) {
        return false;
    }
    position = context->attributes.position;
    return true;
}

bool moveTo(DeviceContext dc, std::int32_t x, std::int32_t y, Point* former) {
    const auto context = findObject<Context>(dc);
    if (context == nullptr) {
        return false;
    }
    const Point before = std::exchange(context->attributes.position, Point{x, y});
    if (former != nullptr) {
        *former = before;
    }
    return true;
}

}  // namespace orvane::platform

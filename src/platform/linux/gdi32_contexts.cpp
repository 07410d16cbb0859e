#include "platform/linux/errors.h"
#include "platform/linux/gdi32_objects.h"
#include "platform/linux/gdi32_parts.h"

#include <cstdlib>
#include <mutex>
#include <new>
#include <utility>

namespace orvane::platform {

namespace {

constexpr std::uint32_t kBlack = 0;
constexpr std::uint32_t kWhite = 0xFFFFFF;

// Guards what is selected where.
constinit std::mutex selection;

/// What every new context has selected: shared by all of them and never deleted.
struct Stock {
    BitmapHandle bitmap = BitmapHandle::none;
    BrushHandle brush = BrushHandle::none;
    PenHandle pen = PenHandle::none;
};
constinit Stock stock;

/// One pixel, black and white.
std::shared_ptr<Surface> stockSurface() {
    PixelFormat format = PixelFormat::ofDepth(1);
    format.palette = {kBlack, kWhite};
    auto surface = Surface::create(1, 1, std::move(format), false);
    if (surface != nullptr) {
        surface->isMonochrome = true;
    }
    return surface;
}

template <class Object>
bool addStock(typename Object::Handle& handle, std::shared_ptr<Object> object) {
    if (handle == Object::Handle::none && object != nullptr) {
        object->isStock = true;
        handle = addHandle(std::move(object));
    }
    return handle != Object::Handle::none;
}

/// Makes the stock objects when they are first needed. Called with `selection` locked.
bool stockIsThere() {
    const auto brush = std::make_shared<Brush>();
    brush->facts.color = kWhite;
    const auto pen = std::make_shared<Pen>();
    pen->facts.width.x = 1;
    return (stock.bitmap != BitmapHandle::none ||
            addStock<Surface>(stock.bitmap, stockSurface())) &&
           addStock<Brush>(stock.brush, brush) && addStock<Pen>(stock.pen, pen);
}

/// Ends a selection. An object that was deleted while it was selected goes with the last one.
template <class Object>
void unselect(Context::Selected<Object>& selected) {
    if (selected.object != nullptr && --selected.object->selections == 0 &&
        selected.object->isDeleted) {
        removeHandle<Object>(selected.handle);
    }
    selected = {};
}

template <class Object>
bool canSelect(const Context&, const Object&) {
    return true;
}

bool canSelect(const Context& context, const Surface& surface) {
    const bool isElsewhere = surface.selections != 0 && context.bitmap.object.get() != &surface;
    return !context.isScreen && (surface.isStock || !isElsewhere);
}

/// Selects an object in place of the one of its kind; the handle of that one, or none. Called with
/// `selection` locked.
template <class Object>
typename Object::Handle selectIn(Context& context, Context::Selected<Object>& selected,
                                 typename Object::Handle handle) {
    auto object = findObject<Object>(handle);
    if (object == nullptr) {
        return Object::Handle::none;
    }
    if (object == selected.object) {
        return handle;
    }
    if (object->isDeleted || !canSelect(context, *object)) {
        return failWith(kErrorInvalidParameter, Object::Handle::none);
    }
    ++object->selections;
    const auto former = selected.handle;
    unselect(selected);
    selected = {handle, std::move(object)};
    return former;
}

/// A new context with the stock objects. The bitmap is not for the screen's.
DeviceContext addContext(bool isScreen) {
    try {
        auto context = std::make_shared<Context>();
        context->isScreen = isScreen;
        const std::scoped_lock lock(selection);
        if (!stockIsThere()) {
            return DeviceContext::none;
        }
        if (!isScreen) {
            selectIn(*context, context->bitmap, stock.bitmap);
        }
        selectIn(*context, context->brush, stock.brush);
        selectIn(*context, context->pen, stock.pen);
        return addHandle(std::move(context));
    } catch (const std::bad_alloc&) {
        return failWith(kErrorNotEnoughMemory, DeviceContext::none);
    }
}

bool removeContext(DeviceContext dc, bool isScreen) {
    const std::scoped_lock lock(selection);
    const auto context = findObject<Context>(dc);
    if (context == nullptr) {
        return false;
    }
    if (context->isScreen != isScreen) {
        return failWith(kErrorInvalidHandle, false);
    }
    unselect(context->bitmap);
    unselect(context->brush);
    unselect(context->pen);
    return removeHandle<Context>(dc) != nullptr;
}

/// Deletes an object, at once or when it is no longer selected. Stock objects can't be deleted, and
/// trying to is no failure.
template <class Object>
bool deleteOne(typename Object::Handle handle) {
    const auto object = findObject<Object>(handle);
    if (object == nullptr) {
        return false;
    }
    if (object->isStock) {
        return true;
    }
    if (object->selections != 0) {
        object->isDeleted = true;
        return true;
    }
    return removeHandle<Object>(handle) != nullptr;
}

}  // namespace

DeviceContext createCompatibleContext(DeviceContext reference) {
    if (reference != DeviceContext::none && findObject<Context>(reference) == nullptr) {
        return DeviceContext::none;
    }
    return addContext(false);
}

bool deleteContext(DeviceContext dc) {
    return removeContext(dc, false);
}

DeviceContext createScreenContext() {
    return addContext(true);
}

bool releaseScreenContext(DeviceContext dc) {
    return removeContext(dc, true);
}

std::int32_t saveContext(DeviceContext dc) {
    const std::scoped_lock lock(selection);
    const auto context = findObject<Context>(dc);
    if (context == nullptr) {
        return 0;
    }
    try {
        context->saved.push_back({context->bitmap.handle, context->brush.handle,
                                  context->pen.handle, context->attributes});
    } catch (const std::bad_alloc&) {
        return failWith(kErrorNotEnoughMemory, 0);
    }
    return static_cast<std::int32_t>(context->saved.size());
}

bool restoreContext(DeviceContext dc, std::int32_t state) {
    const std::scoped_lock lock(selection);
    const auto context = findObject<Context>(dc);
    if (context == nullptr) {
        return false;
    }
    const auto count = static_cast<std::int64_t>(context->saved.size());
    if (state == 0 || std::abs(std::int64_t{state}) > count) {
        return failWith(kErrorInvalidParameter, false);
    }
    const auto index = static_cast<std::size_t>(state > 0 ? state - 1 : count + state);
    const Context::Saved& saved = context->saved[index];
    selectIn(*context, context->bitmap, saved.bitmap);
    selectIn(*context, context->brush, saved.brush);
    selectIn(*context, context->pen, saved.pen);
    context->attributes = saved.attributes;
    context->saved.erase(context->saved.begin() + static_cast<std::ptrdiff_t>(index),
                         context->saved.end());
    return true;
}

GdiObject selectObject(DeviceContext dc, GdiObject object) {
    const std::scoped_lock lock(selection);
    const auto context = findObject<Context>(dc);
    if (context == nullptr) {
        return {};
    }
    switch (handles().kindOf(object.number)) {
    case HandleKind::bitmap:
        return selectIn(*context, context->bitmap, BitmapHandle{object.number});
    case HandleKind::brush:
        return selectIn(*context, context->brush, BrushHandle{object.number});
    case HandleKind::pen:
        return selectIn(*context, context->pen, PenHandle{object.number});
    default:
        return failWith(kErrorInvalidHandle, GdiObject());
    }
}

bool deleteObject(GdiObject object) {
    const std::scoped_lock lock(selection);
    switch (handles().kindOf(object.number)) {
    case HandleKind::bitmap:
        return deleteOne<Surface>(BitmapHandle{object.number});
    case HandleKind::brush:
        return deleteOne<Brush>(BrushHandle{object.number});
    case HandleKind::pen:
        return deleteOne<Pen>(PenHandle{object.number});
    default:
        return failWith(kErrorInvalidHandle, false);
    }
}

std::shared_ptr<Surface> selectedSurface(DeviceContext dc) {
    const std::scoped_lock lock(selection);
    const auto context = findObject<Context>(dc);
    if (context == nullptr) {
        return nullptr;
    }
    return context->isScreen ? failWith<std::shared_ptr<Surface>>(kErrorInvalidHandle, nullptr)
                             : context->bitmap.object;
}

}  // namespace orvane::platform

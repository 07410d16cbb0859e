#include "pictures/COffscreenPicture.h"

#include "frame/errors.h"
#include "platform/gdi32.h"
#include "platform/user32.h"
#include "support/pictures.h"

namespace orvane {

using namespace platform;

namespace {

constexpr auto kOffscreenError = static_cast<std::int32_t>(0x80040045);

// What a width or height of -1 stands for: the source's own.
constexpr std::int32_t kWhole = -1;

[[noreturn]] void RaiseOffscreenError(std::int32_t number, const char16_t* description = u"") {
    RuntimeError failure(number);
    failure.source = u"COffscreenPicture";
    if (*description != u'\0') failure.description = description;
    throw failure;
}

[[noreturn]] void raiseBadArgument() {
    RaiseOffscreenError(error::kInvalidArgument);
}

constexpr char16_t kCantCreateBrush[] = u"Can't create brush.";
constexpr char16_t kCantCreatePen[] = u"Can't create pen.";
constexpr char16_t kCantSelectBrush[] = u"Can't select brush in device context.";
constexpr char16_t kCantSelectPen[] = u"Can't select pen in device context.";

/// Selects a new pen or brush in place of the old one, which is deleted then and not before.
template <class Handle>
void replace(DeviceContext dc, Handle& current, Handle fresh, const char16_t* cantCreate,
             const char16_t* cantSelect) {
    if (fresh == Handle::none) RaiseOffscreenError(kOffscreenError, cantCreate);
    if (gdi32.SelectObject(dc, fresh).isNone()) {
        gdi32.DeleteObject(fresh);
        RaiseOffscreenError(kOffscreenError, cantSelect);
    }
    if (current != Handle::none) gdi32.DeleteObject(current);
    current = fresh;
}

/// What a pen is made of; all 0 when there is none.
LogPen factsOf(PenHandle pen) {
    LogPen facts;
    gdi32.GetPen(pen, facts);
    return facts;
}

}  // namespace

COffscreenPicture::~COffscreenPicture() {
    Destroy();
}

/// The steps that both ways of making a surface begin with.
void COffscreenPicture::start(const char16_t* failure) {
    hDC_ = gdi32.CreateCompatibleDC(DeviceContext::none);
    if (hDC_ == DeviceContext::none) RaiseOffscreenError(kOffscreenError, failure);
    SavedDC_ = gdi32.SaveDC(hDC_);
    gdi32.SetMapMode(hDC_, kMapModeText);
    Initialized_ = true;
}

void COffscreenPicture::selectOrDestroy(GdiObject object, const char16_t* failure) {
    if (!gdi32.SelectObject(hDC_, object).isNone()) return;
    Destroy();
    RaiseOffscreenError(kOffscreenError, failure);
}

void COffscreenPicture::Create(std::int32_t width, std::int32_t height, std::uint32_t backColor) {
    Destroy();
    if (width < 1 || height < 1) raiseBadArgument();
    start(u"Can't create device context.");

    const WindowHandle desktop = user32.GetDesktopWindow();
    const DeviceContext screen = user32.GetDC(desktop);
    hBitmap_ = gdi32.CreateCompatibleBitmap(screen, width, height);
    user32.ReleaseDC(desktop, screen);
    if (hBitmap_ == BitmapHandle::none) {
        Destroy();
        RaiseOffscreenError(kOffscreenError, u"Can't create compatible bitmap.");
    }
    selectOrDestroy(hBitmap_, u"Can't select compatible bitmap in device context.");

    std::uint32_t color = 0;
    ErrorTrap trap;
    trap([&] { color = nqTranslateColor(backColor, 0); });
    if (trap.number() != 0) {
        Destroy();
        raiseBadArgument();
    }
    hBrush_ = gdi32.CreateSolidBrush(color);
    if (hBrush_ == BrushHandle::none) {
        Destroy();
        RaiseOffscreenError(kOffscreenError, kCantCreateBrush);
    }
    selectOrDestroy(hBrush_, kCantSelectBrush);
    hPen_ = gdi32.CreatePen(kPenSolid, 1, color);
    if (hPen_ == PenHandle::none) {
        Destroy();
        RaiseOffscreenError(kOffscreenError, kCantCreatePen);
    }
    selectOrDestroy(hPen_, kCantSelectPen);
    // Pen and brush have one colour: this fills the surface.
    gdi32.Rectangle(hDC_, 0, 0, width, height);
}

void COffscreenPicture::Destroy() {
    if (!Initialized_) return;
    gdi32.RestoreDC(hDC_, SavedDC_);
    if (hBrush_ != BrushHandle::none) gdi32.DeleteObject(hBrush_);
    if (hPen_ != PenHandle::none) gdi32.DeleteObject(hPen_);
    if (hBitmap_ != BitmapHandle::none) gdi32.DeleteObject(hBitmap_);
    if (hDC_ != DeviceContext::none) gdi32.DeleteDC(hDC_);
    hBrush_ = BrushHandle::none;
    hPen_ = PenHandle::none;
    hBitmap_ = BitmapHandle::none;
    hDC_ = DeviceContext::none;
    Initialized_ = false;
}

Picture COffscreenPicture::Picture() const {
    if (!Initialized_) return nullptr;
    const BitmapHandle copy = nqCopyBitmap(hBitmap_);
    if (copy == BitmapHandle::none) return nullptr;
    try {
        return nqGetBitmapFromHandle(copy);
    } catch (...) {
        // It is the picture's only when there is one.
        gdi32.DeleteObject(copy);
        throw;
    }
}

void COffscreenPicture::putPicture(const orvane::Picture& picture) {
    // The old surface goes whatever becomes of the new one.
    Destroy();
    if (picture.isNothing() || picture.type() != orvane::Picture::Type::bitmap) raiseBadArgument();
    start(u"Can't create compatible device context.");
    hBitmap_ = nqCopyBitmap(BitmapHandle{picture.handle()});
    if (hBitmap_ == BitmapHandle::none) {
        Destroy();
        RaiseOffscreenError(kOffscreenError, u"Can't copy bitmap.");
    }
    selectOrDestroy(hBitmap_, u"Can't select bitmap in device context.");
}

void COffscreenPicture::PaintPicture(const orvane::Picture& picture, std::int32_t destX,
                                     std::int32_t destY, std::int32_t width, std::int32_t height,
                                     std::int32_t srcX, std::int32_t srcY,
                                     std::uint32_t rasterOperation) {
    if (!Initialized_) return;
    COffscreenPicture source;
    source.putPicture(picture);
    PaintPicture2(source, destX, destY, width, height, srcX, srcY, rasterOperation);
}

void COffscreenPicture::PaintPicture2(const COffscreenPicture& source, std::int32_t destX,
                                      std::int32_t destY, std::int32_t width, std::int32_t height,
                                      std::int32_t srcX, std::int32_t srcY,
                                      std::uint32_t rasterOperation) {
    if (!Initialized_) return;
    if (!source.Initialized()) raiseBadArgument();
    if (width == kWhole) width = source.Width();
    if (width == kWhole) raiseBadArgument();
    if (height == kWhole) height = source.Height();
    if (height == kWhole) raiseBadArgument();
    if (!gdi32.BitBlt(hDC_, destX, destY, width, height, source.hDC(), srcX, srcY,
                      rasterOperation)) {
        RaiseOffscreenError(kOffscreenError, u"Can't BitBlt bitmap.");
    }
}

std::int32_t COffscreenPicture::Width() const {
    BitmapFacts facts;
    if (!Initialized_ || gdi32.GetObjectA(hBitmap_, facts) == 0) return -1;
    return facts.width;
}

std::int32_t COffscreenPicture::Height() const {
    BitmapFacts facts;
    if (!Initialized_ || gdi32.GetObjectA(hBitmap_, facts) == 0) return -1;
    return facts.height;
}

std::uint32_t COffscreenPicture::BkColor() const {
    return Initialized_ ? gdi32.GetBkColor(hDC_) : 0;
}

void COffscreenPicture::putBkColor(std::uint32_t color) {
    if (!Initialized_) return;
    if (gdi32.SetBkColor(hDC_, nqTranslateColor(color, 0)) == kColorInvalid) {
        RaiseOffscreenError(kOffscreenError, u"Can't set back color.");
    }
}

std::int32_t COffscreenPicture::BkMode() const {
    return Initialized_ ? gdi32.GetBkMode(hDC_) : 0;
}

void COffscreenPicture::putBkMode(std::int32_t mode) {
    if (!Initialized_) return;
    if (mode != kBackgroundOpaque) raiseBadArgument();
    if (gdi32.SetBkMode(hDC_, mode) == 0) {
        RaiseOffscreenError(kOffscreenError, u"Can't set background mix mode.");
    }
}

std::uint32_t COffscreenPicture::PenColor() const {
    return Initialized_ ? factsOf(hPen_).color : 0;
}

void COffscreenPicture::putPenColor(std::uint32_t color) {
    if (!Initialized_) return;
    const std::uint32_t plain = nqTranslateColor(color, 0);
    LogPen facts = factsOf(hPen_);
    facts.color = plain;
    replace(hDC_, hPen_, gdi32.CreatePenIndirect(facts), kCantCreatePen, kCantSelectPen);
}

std::int32_t COffscreenPicture::PenWidth() const {
    return Initialized_ ? factsOf(hPen_).width.x : 0;
}

void COffscreenPicture::putPenWidth(std::int32_t width) {
    if (!Initialized_) return;
    LogPen facts = factsOf(hPen_);
    facts.width.x = width;
    replace(hDC_, hPen_, gdi32.CreatePenIndirect(facts), kCantCreatePen, kCantSelectPen);
}

std::int32_t COffscreenPicture::PenStyle() const {
    return Initialized_ ? static_cast<std::int32_t>(factsOf(hPen_).style) : 0;
}

void COffscreenPicture::putPenStyle(std::int32_t style) {
    if (!Initialized_) return;
    LogPen facts = factsOf(hPen_);
    facts.style = static_cast<std::uint32_t>(style);
    replace(hDC_, hPen_, gdi32.CreatePenIndirect(facts), kCantCreatePen, kCantSelectPen);
}

std::uint32_t COffscreenPicture::BrushColor() const {
    LogBrush facts;
    if (Initialized_) gdi32.GetBrush(hBrush_, facts);
    return facts.color;
}

void COffscreenPicture::putBrushColor(std::uint32_t color) {
    if (!Initialized_) return;
    const std::uint32_t plain = nqTranslateColor(color, 0);
    LogBrush facts;
    gdi32.GetBrush(hBrush_, facts);
    facts.color = plain;
    replace(hDC_, hBrush_, gdi32.CreateBrushIndirect(facts), kCantCreateBrush, kCantSelectBrush);
}

std::int32_t COffscreenPicture::CurrentX() const {
    Point position;
    if (Initialized_) gdi32.GetCurrentPositionEx(hDC_, position);
    return position.x;
}

void COffscreenPicture::putCurrentX(std::int32_t x) {
    if (Initialized_) gdi32.MoveToEx(hDC_, x, CurrentY(), nullptr);
}

std::int32_t COffscreenPicture::CurrentY() const {
    Point position;
    if (Initialized_) gdi32.GetCurrentPositionEx(hDC_, position);
    return position.y;
}

void COffscreenPicture::putCurrentY(std::int32_t y) {
    if (Initialized_) gdi32.MoveToEx(hDC_, CurrentX(), y, nullptr);
}

std::int32_t COffscreenPicture::ROP2() const {
    return Initialized_ ? gdi32.GetROP2(hDC_) : 0;
}

void COffscreenPicture::putROP2(std::int32_t operation) {
    if (!Initialized_) return;
    if (gdi32.SetROP2(hDC_, operation) == 0) {
        RaiseOffscreenError(kOffscreenError, u"Can't set raster operation in device context.");
    }
}

}  // namespace orvane

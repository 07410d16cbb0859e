#include "platform/gdiplus.h"

#include "platform/win32/system.h"

#include <atomic>
#include <cstring>

namespace orvane::platform {

namespace win32 {

namespace {

constexpr std::uint32_t kErrorProcNotFound = 127;

/// The system's layout of the start-up input.
struct StartupInput {
    UINT32 version;
    void* debugEventCallback;
    BOOL suppressBackgroundThread;
    BOOL suppressExternalCodecs;
};
static_assert(sizeof(StartupInput) == 16);

/// A function of GDI+ by its name: from the system's folder, or from where the host has its own
/// copy, on systems that came without. Null with the last error 126 or 127.
FARPROC functionNamed(const char* name) {
    constexpr const char* kLibrary = "GDIPlus.DLL";
    const FARPROC function = systemFunction(kLibrary, name);
    if (function != nullptr || lastError() == kErrorProcNotFound) return function;
    const HMODULE module = ::LoadLibraryA(kLibrary);
    if (module == nullptr) return failed(kErrorModuleNotFound, FARPROC{});
    return ::GetProcAddress(module, name);
}

/// Binds at the first call; a failure is not kept, so that a GDI+ that is put there later is found.
template <class Signature>
class Function;

template <class... Arguments>
class Function<GdiplusStatus(Arguments...)> {
public:
    constexpr explicit Function(const char* name) : name_(name) {}

    GdiplusStatus operator()(Arguments... arguments) {
        Target target = target_.load();
        if (target == nullptr) {
            target = reinterpret_cast<Target>(reinterpret_cast<void*>(functionNamed(name_)));
            if (target == nullptr) return GdiplusStatus::notBound;
            target_.store(target);
        }
        return static_cast<GdiplusStatus>(target(arguments...));
    }

private:
    using Target = int(WINAPI*)(Arguments...);

    const char* name_;
    std::atomic<Target> target_ = nullptr;
};

void* objectOf(GdiplusImage image) {
    return systemHandle<void*>(image);
}

void* objectOf(GdiplusGraphics graphics) {
    return systemHandle<void*>(graphics);
}

GdiplusStatus startup(GdiplusToken& token, const GdiplusStartupInput& input) {
    static constinit Function<GdiplusStatus(ULONG_PTR*, const StartupInput*, void*)> function(
        "GdiplusStartup");
    const StartupInput record{input.version, input.debugEventCallback,
                              input.suppressBackgroundThread, input.suppressExternalCodecs};
    ULONG_PTR started = 0;
    const GdiplusStatus status = function(&started, &record, nullptr);
    token = status == GdiplusStatus::ok ? static_cast<GdiplusToken>(started) : GdiplusToken::none;
    return status;
}

void shutdown(GdiplusToken token) {
    // Gives nothing back; the wrapper reads whatever is in the result's register and drops it.
    static constinit Function<GdiplusStatus(ULONG_PTR)> function("GdiplusShutdown");
    function(static_cast<ULONG_PTR>(token));
}

GdiplusStatus loadImageFromFile(const std::u16string& fileName, GdiplusImage& image) {
    static constinit Function<GdiplusStatus(const wchar_t*, void**)> function(
        "GdipLoadImageFromFile");
    void* loaded = nullptr;
    const GdiplusStatus status =
        function(reinterpret_cast<const wchar_t*>(fileName.c_str()), &loaded);
    image = status == GdiplusStatus::ok ? ownHandle<GdiplusImage>(loaded) : GdiplusImage::none;
    return status;
}

GdiplusStatus disposeImage(GdiplusImage image) {
    static constinit Function<GdiplusStatus(void*)> function("GdipDisposeImage");
    return function(objectOf(image));
}

GdiplusStatus imageWidth(GdiplusImage image, std::uint32_t& width) {
    static constinit Function<GdiplusStatus(void*, UINT*)> function("GdipGetImageWidth");
    UINT value = 0;
    const GdiplusStatus status = function(objectOf(image), &value);
    width = value;
    return status;
}

GdiplusStatus imageHeight(GdiplusImage image, std::uint32_t& height) {
    static constinit Function<GdiplusStatus(void*, UINT*)> function("GdipGetImageHeight");
    UINT value = 0;
    const GdiplusStatus status = function(objectOf(image), &value);
    height = value;
    return status;
}

GdiplusStatus imageRawFormat(GdiplusImage image, ClassIdBytes& format) {
    static constinit Function<GdiplusStatus(void*, GUID*)> function("GdipGetImageRawFormat");
    GUID id{};
    static_assert(sizeof(id) == sizeof(format));
    const GdiplusStatus status = function(objectOf(image), &id);
    std::memcpy(format.bytes.data(), &id, sizeof(id));
    return status;
}

GdiplusStatus imagePixelFormat(GdiplusImage image, std::uint32_t& format) {
    static constinit Function<GdiplusStatus(void*, INT*)> function("GdipGetImagePixelFormat");
    INT value = 0;
    const GdiplusStatus status = function(objectOf(image), &value);
    format = static_cast<std::uint32_t>(value);
    return status;
}

GdiplusStatus createFromHdc(DeviceContext dc, GdiplusGraphics& graphics) {
    static constinit Function<GdiplusStatus(HDC, void**)> function("GdipCreateFromHDC");
    void* made = nullptr;
    const GdiplusStatus status = function(systemHandle<HDC>(dc), &made);
    graphics =
        status == GdiplusStatus::ok ? ownHandle<GdiplusGraphics>(made) : GdiplusGraphics::none;
    return status;
}

GdiplusStatus deleteGraphics(GdiplusGraphics graphics) {
    static constinit Function<GdiplusStatus(void*)> function("GdipDeleteGraphics");
    return function(objectOf(graphics));
}

GdiplusStatus drawImageRect(GdiplusGraphics graphics, GdiplusImage image, std::int32_t x,
                            std::int32_t y, std::int32_t width, std::int32_t height) {
    static constinit Function<GdiplusStatus(void*, void*, INT, INT, INT, INT)> function(
        "GdipDrawImageRectI");
    return function(objectOf(graphics), objectOf(image), x, y, width, height);
}

constexpr Gdiplus bound() {
    Gdiplus table;
    table.GdiplusStartup.bind<startup>();
    table.GdiplusShutdown.bind<shutdown>();
    table.GdipLoadImageFromFile.bind<loadImageFromFile>();
    table.GdipDisposeImage.bind<disposeImage>();
    table.GdipGetImageWidth.bind<imageWidth>();
    table.GdipGetImageHeight.bind<imageHeight>();
    table.GdipGetImageRawFormat.bind<imageRawFormat>();
    table.GdipGetImagePixelFormat.bind<imagePixelFormat>();
    table.GdipCreateFromHDC.bind<createFromHdc>();
    table.GdipDeleteGraphics.bind<deleteGraphics>();
    table.GdipDrawImageRectI.bind<drawImageRect>();
    return table;
}
static_assert(allBound(bound()));

}  // namespace

}  // namespace win32

constinit Gdiplus gdiplus = win32::bound();

}  // namespace orvane::platform

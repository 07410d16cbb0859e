#include "platform/linux/picture.h"

#include "platform/gdi32.h"
#include "platform/host_runtime.h"
#include "platform/linux/icons.h"
#include "platform/linux/picture_save.h"
#include "platform/live_objects.h"
#include "platform/oleaut32.h"
#include "platform/user32.h"
#include "support/temp_dir.h"

#include <algorithm>
#include <sys/stat.h>

namespace orvane::platform {
namespace {

using Bytes = std::vector<std::uint8_t>;

/// A stream over bytes in memory that moves a few of them at a time, as a stream may.
class SlowStream final : public IStream {
public:
    Bytes bytes;
    std::size_t position = 0;
    std::size_t room = ~std::size_t{0};

    HRESULT QueryInterface(REFIID, void**) override { return E_NOINTERFACE; }
    ULONG AddRef() override { return 2; }
    ULONG Release() override { return 1; }
    HRESULT Read(void* data, ULONG size, ULONG* read) override {
        *read = static_cast<ULONG>(std::min({std::size_t{size}, bytes.size() - position, kStep}));
        std::copy_n(bytes.begin() + static_cast<std::ptrdiff_t>(position), *read,
                    static_cast<std::uint8_t*>(data));
        position += *read;
        return S_OK;
    }
    HRESULT Write(const void* data, ULONG size, ULONG* written) override {
        *written = static_cast<ULONG>(std::min({std::size_t{size}, room, kStep}));
        const auto* from = static_cast<const std::uint8_t*>(data);
        bytes.insert(bytes.end(), from, from + *written);
        room -= *written;
        return S_OK;
    }
    HRESULT Seek(LARGE_INTEGER, DWORD, ULARGE_INTEGER*) override { return E_NOTIMPL; }
    HRESULT SetSize(ULARGE_INTEGER) override { return E_NOTIMPL; }
    HRESULT CopyTo(IStream*, ULARGE_INTEGER, ULARGE_INTEGER*, ULARGE_INTEGER*) override {
        return E_NOTIMPL;
    }
    HRESULT Commit(DWORD) override { return E_NOTIMPL; }
    HRESULT Revert() override { return E_NOTIMPL; }
    HRESULT LockRegion(ULARGE_INTEGER, ULARGE_INTEGER, DWORD) override { return E_NOTIMPL; }
    HRESULT UnlockRegion(ULARGE_INTEGER, ULARGE_INTEGER, DWORD) override { return E_NOTIMPL; }
    HRESULT Stat(STATSTG*, DWORD) override { return E_NOTIMPL; }
    HRESULT Clone(IStream**) override { return E_NOTIMPL; }

private:
    static constexpr std::size_t kStep = 7;
};

std::shared_ptr<Surface> checkered(std::int32_t width, std::int32_t height, PixelFormat format) {
    auto surface = Surface::create(width, height, std::move(format), true);
    for (std::int32_t y = 0; y < height; ++y) {
        for (std::int32_t x = 0; x < width; ++x) {
            const std::uint32_t raw = (x + y) % 2 == 0 ? ~0u : 1u;
            writeRaw(surface->ownRow(y), surface->format().bits, static_cast<std::uint32_t>(x),
                     {&raw, 1});
        }
    }
    return surface;
}

PixelFormat paletteOf(std::uint32_t bits) {
    PixelFormat format = PixelFormat::ofDepth(bits);
    for (std::size_t i = 0; i < format.palette.size(); ++i) {
        format.palette[i] = static_cast<std::uint32_t>(0x010203 * (i + 1)) & 0xFFFFFF;
    }
    return format;
}

/// All pixels as raw numbers, from the top.
std::vector<std::uint32_t> pixelsOf(const Surface& surface) {
    std::vector<std::uint32_t> all;
    for (std::int32_t y = 0; y < surface.height(); ++y) {
        std::vector<std::uint32_t> row(static_cast<std::size_t>(surface.width()));
        readRaw(surface.row(y), surface.format().bits, 0, row);
        all.insert(all.end(), row.begin(), row.end());
    }
    return all;
}

Picture* pictureOf(std::shared_ptr<Surface> surface) {
    const PictureDescription description{PICTYPE_BITMAP, addHandle(std::move(surface)),
                                         IconHandle::none};
    PictureContent content;
    EXPECT_TRUE(contentFromDescription(description, true, content));
    return Picture::create(content);
}

OLE_HANDLE handleOf(Picture* picture) {
    OLE_HANDLE handle = 0;
    EXPECT_EQ(picture->get_Handle(&handle), S_OK);
    return handle;
}

/// What is left of a picture that was saved to a stream and loaded from it.
Picture* reloaded(Picture* picture) {
    SlowStream stream;
    EXPECT_EQ(picture->Save(&stream, 1), S_OK);
    ULARGE_INTEGER size{};
    EXPECT_EQ(picture->GetSizeMax(&size), S_OK);
    EXPECT_EQ(size.QuadPart, stream.bytes.size());
    Picture* other = Picture::create({});
    EXPECT_EQ(other->Load(&stream), S_OK);
    return other;
}

TEST(LinuxPictures, BitmapsOfEveryDepthComeBackFromAStream) {
    for (const std::uint32_t bits : {1u, 4u, 8u, 16u, 24u, 32u}) {
        const auto surface = checkered(5, 3, paletteOf(bits));
        Picture* picture = pictureOf(surface);
        Picture* other = reloaded(picture);
        const auto found = findObject<Surface>(BitmapHandle{handleOf(other)});
        ASSERT_NE(found, nullptr) << bits;
        EXPECT_EQ(found->format(), surface->format()) << bits;
        EXPECT_EQ(pixelsOf(*found), pixelsOf(*surface)) << bits;
        EXPECT_EQ(other->Release(), 0u);
        EXPECT_EQ(picture->Release(), 0u);
    }
}

TEST(LinuxPictures, ChannelMasksComeBackToo) {
    PixelFormat format = PixelFormat::ofDepth(16);
    format.redMask = 0xF800;
    format.greenMask = 0x07E0;
    const auto surface = checkered(3, 2, format);
    Picture* picture = pictureOf(surface);
    Picture* other = reloaded(picture);
    const auto found = findObject<Surface>(BitmapHandle{handleOf(other)});
    ASSERT_NE(found, nullptr);
    EXPECT_EQ(found->format(), format);
    EXPECT_EQ(pixelsOf(*found), pixelsOf(*surface));
    other->Release();
    picture->Release();
}

TEST(LinuxPictures, IconsAndCursorsComeBackFromAStream) {
    for (const bool isIcon : {true, false}) {
        auto icon = std::make_shared<Icon>();
        icon->isIcon = isIcon;
        icon->hotspotX = isIcon ? 8 : 3;
        icon->hotspotY = isIcon ? 8 : 5;
        icon->color = checkered(16, 16, PixelFormat::ofDepth(32));
        PixelFormat mask = PixelFormat::ofDepth(1);
        mask.palette = {0, 0xFFFFFF};
        icon->mask = Surface::create(16, 16, mask, true);
        PictureContent content;
        ASSERT_TRUE(contentFromDescription({PICTYPE_ICON, BitmapHandle::none, addHandle(icon)},
                                           true, content));
        Picture* picture = Picture::create(content);
        Picture* other = reloaded(picture);
        IconFacts facts;
        ASSERT_TRUE(user32.GetIconInfo(IconHandle{handleOf(other)}, facts));
        EXPECT_EQ(facts.isIcon, isIcon);
        EXPECT_EQ(facts.hotspotX, icon->hotspotX);
        EXPECT_EQ(facts.hotspotY, icon->hotspotY);
        EXPECT_EQ(pixelsOf(*findObject<Surface>(facts.color)), pixelsOf(*icon->color));
        EXPECT_TRUE(gdi32.DeleteObject(facts.color));
        EXPECT_TRUE(gdi32.DeleteObject(facts.mask));
        other->Release();
        picture->Release();
    }
}

TEST(LinuxPictures, AStreamThatIsNoPictureChangesNothing) {
    Picture* picture = pictureOf(checkered(2, 2, PixelFormat::ofDepth(24)));
    const OLE_HANDLE before = handleOf(picture);
    SlowStream whole;
    EXPECT_EQ(picture->Save(&whole, 1), S_OK);
    for (std::size_t size = 0; size < whole.bytes.size(); ++size) {
        SlowStream cut;
        cut.bytes.assign(whole.bytes.begin(),
                         whole.bytes.begin() + static_cast<std::ptrdiff_t>(size));
        EXPECT_TRUE(FAILED(picture->Load(&cut))) << size;
    }
    SlowStream other;
    other.bytes = {'x', 't', 0, 0, 0, 0, 0, 0};
    EXPECT_EQ(picture->Load(&other), E_FAIL);
    other = SlowStream();
    other.bytes = {'l', 't', 0, 0, 0xFF, 0xFF, 0xFF, 0x7F};
    EXPECT_EQ(picture->Load(&other), E_FAIL);
    EXPECT_EQ(handleOf(picture), before);
    picture->Release();
}

TEST(LinuxPictures, AFileIsSavedWithoutTheStreamsHeader) {
    Picture* picture = pictureOf(checkered(2, 2, PixelFormat::ofDepth(24)));
    SlowStream stream;
    LONG size = 0;
    EXPECT_EQ(picture->SaveAsFile(&stream, 1, &size), S_OK);
    EXPECT_EQ(static_cast<std::size_t>(size), stream.bytes.size());
    EXPECT_EQ(stream.bytes.size(), 54u + 16u);
    EXPECT_EQ(stream.bytes[0], 'B');
    SlowStream full;
    full.room = 20;
    EXPECT_EQ(picture->SaveAsFile(&full, 1, &size), E_FAIL);
    picture->Release();
    Picture* empty = Picture::create({});
    EXPECT_EQ(empty->SaveAsFile(&stream, 1, &size), E_FAIL);
    empty->Release();
}

TEST(LinuxPictures, LiveOnesAreCounted) {
    const std::uint32_t before = livePlatformObjects();
    Picture* picture = Picture::create({});
    EXPECT_EQ(livePlatformObjects(), before + 1);
    EXPECT_EQ(picture->AddRef(), 2u);
    EXPECT_EQ(picture->Release(), 1u);
    EXPECT_EQ(livePlatformObjects(), before + 1);
    EXPECT_EQ(picture->Release(), 0u);
    EXPECT_EQ(livePlatformObjects(), before);
}

TEST(LinuxPictures, NamesAreFoundWithoutRegardToCase) {
    Picture* picture = Picture::create({});
    const auto idOf = [picture](const char16_t* name) {
        std::u16string text = name;
        LPOLESTR names[] = {text.data()};
        DISPID id = 0;
        const HRESULT result = picture->GetIDsOfNames(GUID_NULL, names, 1, 0, &id);
        EXPECT_EQ(result, id == DISPID_UNKNOWN ? DISP_E_UNKNOWNNAME : S_OK);
        return id;
    };
    EXPECT_EQ(idOf(u"Handle"), 0);
    EXPECT_EQ(idOf(u"HPAL"), 2);
    EXPECT_EQ(idOf(u"type"), 3);
    EXPECT_EQ(idOf(u"wIdTh"), 4);
    EXPECT_EQ(idOf(u"Height"), 5);
    EXPECT_EQ(idOf(u"Render"), 6);
    EXPECT_EQ(idOf(u"Heigh"), DISPID_UNKNOWN);
    EXPECT_EQ(idOf(u"Heights"), DISPID_UNKNOWN);
    picture->Release();
}

TEST(LinuxPictures, PropertiesAreReadOnlyButForThePalette) {
    Picture* picture = pictureOf(checkered(2, 2, PixelFormat::ofDepth(8)));
    VARIANT argument;
    VariantInit(&argument);
    argument.vt = VT_I4;
    argument.lVal = 77;
    DISPID named = DISPID_PROPERTYPUT;
    DISPPARAMS put{&argument, &named, 1, 1};
    EXPECT_EQ(picture->Invoke(DISPID_PICT_WIDTH, GUID_NULL, 0, DISPATCH_PROPERTYPUT, &put, nullptr,
                              nullptr, nullptr),
              DISP_E_MEMBERNOTFOUND);
    EXPECT_EQ(picture->Invoke(DISPID_PICT_HPAL, GUID_NULL, 0, DISPATCH_PROPERTYPUT, &put, nullptr,
                              nullptr, nullptr),
              S_OK);
    OLE_HANDLE palette = 0;
    EXPECT_EQ(picture->get_hPal(&palette), S_OK);
    EXPECT_EQ(palette, 77u);
    EXPECT_EQ(picture->Invoke(DISPID_PICT_WIDTH, GUID_NULL, 0, DISPATCH_PROPERTYGET, &put, nullptr,
                              nullptr, nullptr),
              DISP_E_BADPARAMCOUNT);
    picture->Release();
}

TEST(LinuxPictures, RenderingDrawsTheWholePictureUpright) {
    const auto source = checkered(4, 4, PixelFormat::ofDepth(24));
    Picture* picture = pictureOf(source);
    const auto target = Surface::create(4, 4, PixelFormat::ofDepth(24), true);
    const BitmapHandle bitmap = addHandle(std::shared_ptr<Surface>(target));
    const DeviceContext dc = gdi32.CreateCompatibleDC(DeviceContext::none);
    const GdiObject former = gdi32.SelectObject(dc, bitmap);
    LONG width = 0;
    LONG height = 0;
    EXPECT_EQ(picture->get_Width(&width), S_OK);
    EXPECT_EQ(picture->get_Height(&height), S_OK);
    const auto hdc = reinterpret_cast<HDC>(std::uintptr_t{static_cast<std::uint32_t>(dc)});
    EXPECT_EQ(picture->Render(hdc, 0, 0, 4, 4, 0, height, width, -height, nullptr), S_OK);
    EXPECT_EQ(pixelsOf(*target), pixelsOf(*source));
    EXPECT_EQ(picture->Render(hdc, 0, 0, 0, 4, 0, height, width, -height, nullptr),
              hresultFrom(0x800A017C));
    gdi32.SelectObject(dc, former);
    EXPECT_TRUE(gdi32.DeleteDC(dc));
    EXPECT_TRUE(gdi32.DeleteObject(bitmap));
    picture->Release();
}

TEST(LinuxPictures, RenderingAnIconMixesItWithWhatIsBehind) {
    auto icon = std::make_shared<Icon>();
    PixelFormat mask = PixelFormat::ofDepth(1);
    mask.palette = {0, 0xFFFFFF};
    icon->color = Surface::create(1, 1, PixelFormat::ofDepth(32), true);
    icon->mask = Surface::create(1, 1, mask, true);
    const std::uint32_t half = 0x80FFFFFF;
    writeRaw(icon->color->ownRow(0), 32, 0, {&half, 1});
    PictureContent content;
    ASSERT_TRUE(
        contentFromDescription({PICTYPE_ICON, BitmapHandle::none, addHandle(icon)}, true, content));
    Picture* picture = Picture::create(content);
    const auto target = Surface::create(1, 1, PixelFormat::ofDepth(32), true);
    const BitmapHandle bitmap = addHandle(std::shared_ptr<Surface>(target));
    const DeviceContext dc = gdi32.CreateCompatibleDC(DeviceContext::none);
    const GdiObject former = gdi32.SelectObject(dc, bitmap);
    const auto hdc = reinterpret_cast<HDC>(std::uintptr_t{static_cast<std::uint32_t>(dc)});
    const LONG size = content.width;
    EXPECT_EQ(picture->Render(hdc, 0, 0, 1, 1, 0, size, size, -size, nullptr), S_OK);
    EXPECT_EQ(pixelsOf(*target), std::vector<std::uint32_t>{0x808080});
    EXPECT_EQ(picture->Render(hdc, 0, 0, 1 << 30, 1 << 30, 0, size, size, -size, nullptr),
              E_OUTOFMEMORY);
    gdi32.SelectObject(dc, former);
    EXPECT_TRUE(gdi32.DeleteDC(dc));
    EXPECT_TRUE(gdi32.DeleteObject(bitmap));
    picture->Release();
}

TEST(LinuxPictures, ADeadHandleMakesNoPicture) {
    IPictureDisp* picture = nullptr;
    EXPECT_EQ(
        oleaut32.OleCreatePictureIndirect({1, BitmapHandle{1234}, IconHandle::none}, true, picture),
        E_INVALIDARG);
    EXPECT_EQ(lastError(), kErrorInvalidHandle);
    EXPECT_EQ(
        oleaut32.OleCreatePictureIndirect({9, BitmapHandle::none, IconHandle::none}, true, picture),
        E_INVALIDARG);
    EXPECT_EQ(picture, nullptr);
}

class LinuxLoader : public test::TempDirTest {};

TEST_F(LinuxLoader, PipesAndDevicesAreRefusedAtOnce) {
    IPictureDisp* picture = nullptr;
    const std::string pipe = dir_.file("pipe");
    ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
    EXPECT_EQ(hostRuntime.LoadPicture(pipe, picture), 75);
    EXPECT_EQ(hostRuntime.LoadPicture("/dev/zero", picture), 75);
    EXPECT_EQ(hostRuntime.LoadPicture(dir_.file("no") + "/a", picture), 53);
    EXPECT_EQ(hostRuntime.LoadPicture("", picture), 53);
}

TEST_F(LinuxLoader, AMetafileKeepsItsBytes) {
    // An empty metafile, two inches by one, with the placeable header.
    const Bytes file = {0xD7, 0xCD, 0xC6, 0x9A, 0,    0, 0,  0, 0, 0,    0x40,
                        0x0B, 0xA0, 0x05, 0xA0, 0x05, 0, 0,  0, 0, 0xB1, 0x57 ^ 0x0B ^ 0x05 ^ 0x05,
                        1,    0,    9,    0,    0,    3, 12, 0, 0, 0,    0,
                        0,    3,    0,    0,    0,    0, 0,  3, 0, 0,    0,
                        0,    0};
    Bytes good = file;
    std::uint16_t sum = 0;
    for (std::size_t i = 0; i < 20; i += 2) {
        sum = static_cast<std::uint16_t>(sum ^ (good[i] | good[i + 1] << 8));
    }
    good[20] = static_cast<std::uint8_t>(sum);
    good[21] = static_cast<std::uint8_t>(sum >> 8);
    IPictureDisp* loaded = nullptr;
    ASSERT_EQ(hostRuntime.LoadPicture(dir_.write("a", good), loaded), 0);
    auto* picture = static_cast<Picture*>(loaded);
    SHORT type = 0;
    LONG width = 0;
    EXPECT_EQ(picture->get_Type(&type), S_OK);
    EXPECT_EQ(type, PICTYPE_METAFILE);
    EXPECT_EQ(picture->get_Width(&width), S_OK);
    EXPECT_EQ(width, 5080);
    SlowStream stream;
    LONG size = 0;
    EXPECT_EQ(picture->SaveAsFile(&stream, 1, &size), S_OK);
    EXPECT_EQ(stream.bytes, good);
    EXPECT_EQ(picture->Render(nullptr, 0, 0, 1, 1, 0, 0, 1, 1, nullptr), E_FAIL);
    picture->Release();
}

}  // namespace
}  // namespace orvane::platform

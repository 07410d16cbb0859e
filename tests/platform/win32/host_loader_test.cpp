#include "platform/gdi32.h"
#include "platform/host_runtime.h"
#include "platform/oleaut32.h"
#include "platform/user32.h"
#include "support/temp_dir.h"

#include "orvane/automation.h"

#include <gtest/gtest.h>

namespace orvane::platform {
namespace {

using Bytes = std::vector<std::uint8_t>;

/// Bytes in the order of a file, little end first.
class Writer {
public:
    Writer& u8(std::initializer_list<int> values) {
        for (const int value : values)
            bytes_.push_back(static_cast<std::uint8_t>(value));
        return *this;
    }
    Writer& u16(std::uint32_t value) { return number(value, 2); }
    Writer& u32(std::uint32_t value) { return number(value, 4); }
    Writer& zeros(std::size_t count) {
        bytes_.resize(bytes_.size() + count);
        return *this;
    }
    Writer& header(std::uint32_t width, std::uint32_t height, std::uint32_t bits) {
        return u32(40).u32(width).u32(height).u16(1).u16(bits).zeros(24);
    }
    Bytes bytes() const { return bytes_; }

private:
    Writer& number(std::uint32_t value, int size) {
        for (int i = 0; i < size; ++i)
            bytes_.push_back(static_cast<std::uint8_t>(value >> (8 * i)));
        return *this;
    }
    Bytes bytes_;
};

constexpr std::uint32_t kIcon = 1;
constexpr std::uint32_t kCursor = 2;

/// A 32-bit icon or cursor of 16 by 16, all transparent; for a cursor `a` and `b` are the hot spot.
Bytes iconFile(std::uint32_t kind, std::uint32_t a, std::uint32_t b) {
    constexpr std::uint32_t kSide = 16;
    constexpr std::uint32_t kPixels = kSide * kSide * 4;
    constexpr std::uint32_t kMask = kSide * 4;
    return Writer()
        .u16(0)
        .u16(kind)
        .u16(1)
        .u8({kSide, kSide, 0, 0})
        .u16(a)
        .u16(b)
        .u32(40 + kPixels + kMask)
        .u32(22)
        .header(kSide, kSide * 2, 32)
        .zeros(kPixels + kMask)
        .bytes();
}

Bytes bitmapFile() {
    return Writer().u8({'B', 'M'}).u32(54 + 24).u32(0).u32(54).header(3, 2, 24).zeros(24).bytes();
}

/// An empty metafile, two inches by one, with the placeable header.
Bytes placeableMetafile() {
    const std::uint32_t checksum = 0xCDD7 ^ 0x9AC6 ^ 2880 ^ 1440 ^ 1440;
    return Writer()
        .u32(0x9AC6CDD7)
        .zeros(6)
        .u16(2880)
        .u16(1440)
        .u16(1440)
        .u32(0)
        .u16(checksum)
        .u16(1)
        .u16(9)
        .u16(0x300)
        .u32(12)
        .u16(0)
        .u32(3)
        .u16(0)
        .u32(3)
        .u16(0)
        .bytes();
}

/// An empty enhanced metafile with a frame of 20 by 10 mm.
Bytes enhancedMetafile() {
    return Writer()
        .u32(1)
        .u32(88)
        .zeros(8)
        .u32(99)
        .u32(49)
        .zeros(8)
        .u32(2000)
        .u32(1000)
        .u8({' ', 'E', 'M', 'F'})
        .u32(0x10000)
        .u32(88 + 20)
        .u32(2)
        .u16(1)
        .u16(0)
        .zeros(12)
        .u32(1000)
        .u32(1000)
        .u32(200)
        .u32(200)
        .u32(14)
        .u32(20)
        .u32(0)
        .u32(16)
        .u32(20)
        .bytes();
}

/// A loaded picture, released at its end.
struct Loaded {
    explicit Loaded(const std::string& fileName) {
        IPictureDisp* object = nullptr;
        error = hostRuntime.LoadPicture(fileName, object);
        EXPECT_EQ(object != nullptr, error == 0);
        if (object == nullptr) return;
        void* found = nullptr;
        EXPECT_EQ(object->QueryInterface(IID_IPicture, &found), S_OK);
        object->Release();
        picture = static_cast<IPicture*>(found);
    }
    ~Loaded() {
        if (picture != nullptr) picture->Release();
    }
    Loaded(const Loaded&) = delete;
    Loaded& operator=(const Loaded&) = delete;

    int type() const {
        SHORT value = -1;
        EXPECT_EQ(picture->get_Type(&value), S_OK);
        return value;
    }
    std::uint32_t handle() const {
        OLE_HANDLE value = 0;
        EXPECT_EQ(picture->get_Handle(&value), S_OK);
        return value;
    }
    /// Whether the picture's handle is an icon's and no cursor's.
    bool isIcon() const {
        IconFacts facts;
        EXPECT_TRUE(user32.GetIconInfo(IconHandle{handle()}, facts));
        hotspotX = facts.hotspotX;
        hotspotY = facts.hotspotY;
        EXPECT_TRUE(gdi32.DeleteObject(facts.mask));
        if (facts.color != BitmapHandle::none) {
            EXPECT_TRUE(gdi32.DeleteObject(facts.color));
        }
        return facts.isIcon;
    }

    std::int32_t error = -1;
    IPicture* picture = nullptr;
    mutable std::uint32_t hotspotX = 0;
    mutable std::uint32_t hotspotY = 0;
};

using HostLoaderTest = test::TempDirTest;

TEST_F(HostLoaderTest, ABitmapHasItsSize) {
    const Loaded loaded(dir_.write("a", bitmapFile()));
    ASSERT_EQ(loaded.error, 0);
    EXPECT_EQ(loaded.type(), PICTYPE_BITMAP);
    BitmapFacts facts;
    EXPECT_EQ(gdi32.GetObjectA(BitmapHandle{loaded.handle()}, facts), 24);
    EXPECT_EQ(facts.width, 3);
    EXPECT_EQ(facts.height, 2);
    // Windows keeps the file's 24 bits; Wine's loader makes 32 of every depth.
    EXPECT_TRUE(facts.bitsPixel == 24 || facts.bitsPixel == 32) << facts.bitsPixel;
}

TEST_F(HostLoaderTest, AnIconIsAnIcon) {
    const Loaded loaded(dir_.write("a", iconFile(kIcon, 1, 32)));
    ASSERT_EQ(loaded.error, 0);
    EXPECT_EQ(loaded.type(), PICTYPE_ICON);
    EXPECT_TRUE(loaded.isIcon());
}

TEST_F(HostLoaderTest, ACursorIsACursorWithItsHotSpot) {
    const Loaded loaded(dir_.write("a", iconFile(kCursor, 5, 7)));
    ASSERT_EQ(loaded.error, 0);
    EXPECT_EQ(loaded.type(), PICTYPE_ICON);
    EXPECT_FALSE(loaded.isIcon());
    EXPECT_EQ(loaded.hotspotX, 5u);
    EXPECT_EQ(loaded.hotspotY, 7u);
}

TEST_F(HostLoaderTest, APlaceableMetafileIsOfType2) {
    const Loaded loaded(dir_.write("a", placeableMetafile()));
    ASSERT_EQ(loaded.error, 0);
    EXPECT_EQ(loaded.type(), PICTYPE_METAFILE);
    OLE_XSIZE_HIMETRIC width = 0;
    EXPECT_EQ(loaded.picture->get_Width(&width), S_OK);
    EXPECT_EQ(width, 5080);
}

TEST_F(HostLoaderTest, AnEnhancedMetafileIsOfType4) {
    const Loaded loaded(dir_.write("a", enhancedMetafile()));
    ASSERT_EQ(loaded.error, 0);
    EXPECT_EQ(loaded.type(), PICTYPE_ENHMETAFILE);
}

TEST_F(HostLoaderTest, FilesOfOtherFormatsAreInvalidPictures) {
    EXPECT_EQ(Loaded(dir_.write("empty", "")).error, 481);
    EXPECT_EQ(Loaded(dir_.write("text", "a text file")).error, 481);
    EXPECT_EQ(Loaded(dir_.write("png", "\x89PNG\r\n\x1A\n")).error, 481);
    EXPECT_EQ(Loaded(dir_.write("bare bmp", "BM")).error, 481);
    EXPECT_EQ(Loaded(dir_.write("bare cur", Bytes{0, 0, 2, 0})).error, 481);
    // Nothing tells the size of a metafile without the placeable header.
    const Bytes placeable = placeableMetafile();
    EXPECT_EQ(Loaded(dir_.write("plain", Bytes(placeable.begin() + 22, placeable.end()))).error,
              481);
}

TEST_F(HostLoaderTest, EveryTruncationFailsOrLoads) {
    for (const Bytes& whole : {iconFile(kCursor, 1, 1), iconFile(kIcon, 1, 32), bitmapFile(),
                               placeableMetafile(), enhancedMetafile()}) {
        for (std::size_t size = 0; size < whole.size(); size += 1 + size / 16) {
            const Bytes part(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(size));
            const Loaded loaded(dir_.write("part", part));
            EXPECT_TRUE(loaded.error == 0 || loaded.error == 481) << size << ' ' << loaded.error;
        }
    }
}

TEST_F(HostLoaderTest, TellsAMissingFileFromOneThatCannotBeOpened) {
    EXPECT_EQ(Loaded(dir_.file("missing")).error, 53);
    EXPECT_EQ(Loaded(dir_.file("missing\\file")).error, 53);
    EXPECT_EQ(Loaded(dir_.name()).error, 75);
}

TEST_F(HostLoaderTest, TheFileIsFreeAfterwards) {
    const std::string name = dir_.write("a", bitmapFile());
    const Loaded loaded(name);
    EXPECT_EQ(loaded.error, 0);
    EXPECT_TRUE(std::filesystem::remove(name));
}

TEST(PictureObject, OwnsItsBitmapOnlyWhereToldSo) {
    for (const bool own : {true, false}) {
        const DeviceContext dc = gdi32.CreateCompatibleDC(DeviceContext::none);
        const BitmapHandle bitmap = gdi32.CreateCompatibleBitmap(dc, 4, 3);
        IPictureDisp* picture = nullptr;
        ASSERT_GE(oleaut32.OleCreatePictureIndirect({PICTYPE_BITMAP, bitmap, {}}, own, picture), 0);
        EXPECT_EQ(picture->Release(), 0u);
        BitmapFacts facts;
        EXPECT_EQ(gdi32.GetObjectA(bitmap, facts), own ? 0 : 24);
        EXPECT_EQ(gdi32.DeleteObject(bitmap), !own);
        EXPECT_TRUE(gdi32.DeleteDC(dc));
    }
}

TEST(PictureObject, RefusesTypesThatTheTableHasNot) {
    IPictureDisp* picture = nullptr;
    EXPECT_LT(oleaut32.OleCreatePictureIndirect({PICTYPE_METAFILE, {}, {}}, true, picture), 0);
    EXPECT_EQ(picture, nullptr);
}

}  // namespace
}  // namespace orvane::platform

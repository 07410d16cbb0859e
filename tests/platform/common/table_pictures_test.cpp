#include "platform/gdi32.h"
#include "platform/host_runtime.h"
#include "platform/oleaut32.h"
#include "support/memory_stream.h"
#include "support/temp_dir.h"

#include "orvane/automation.h"

#include <algorithm>
#include <cstring>

// What picture objects and the host's loader promise on every platform.
namespace orvane::platform {
namespace {

using Bytes = std::vector<std::uint8_t>;
using test::MemoryStream;

template <class Interface>
Interface* query(IUnknown* object, REFIID iid) {
    void* found = nullptr;
    EXPECT_EQ(object->QueryInterface(iid, &found), S_OK);
    return static_cast<Interface*>(found);
}

/// A section of 96 by 48 pixels: an inch by half an inch.
BitmapHandle makeBitmap() {
    BitmapInfo info;
    info.biWidth = 96;
    info.biHeight = 48;
    info.biBitCount = 24;
    void* bits = nullptr;
    const BitmapHandle bitmap =
        gdi32.CreateDIBSection(DeviceContext::none, info, kDibRgbColors, bits);
    std::memset(bits, 0x7F, 96 * 48 * 3);
    return bitmap;
}

IPictureDisp* makePicture(BitmapHandle bitmap, bool own) {
    IPictureDisp* picture = nullptr;
    EXPECT_EQ(oleaut32.OleCreatePictureIndirect({1, bitmap, IconHandle::none}, own, picture), S_OK);
    return picture;
}

/// A BMP file of 3 by 2 pixels and 24 bits.
Bytes bmpFile() {
    Bytes file = {'B', 'M', 78, 0, 0, 0, 0, 0, 0, 0, 54, 0, 0, 0, 40,
                  0,   0,   0,  3, 0, 0, 0, 2, 0, 0, 0,  1, 0, 24};
    file.resize(54);
    file.resize(78, 0x11);
    return file;
}

TEST(TablePictures, APictureHasTheBitmapsHandleAndSize) {
    const BitmapHandle bitmap = makeBitmap();
    IPictureDisp* picture = makePicture(bitmap, true);
    auto* facts = query<IPicture>(picture, IID_IPicture);
    OLE_HANDLE handle = 0;
    SHORT type = 0;
    LONG width = 0;
    LONG height = 0;
    EXPECT_EQ(facts->get_Handle(&handle), S_OK);
    EXPECT_EQ(handle, static_cast<OLE_HANDLE>(bitmap));
    EXPECT_EQ(facts->get_Type(&type), S_OK);
    EXPECT_EQ(type, PICTYPE_BITMAP);
    EXPECT_EQ(facts->get_Width(&width), S_OK);
    EXPECT_EQ(facts->get_Height(&height), S_OK);
    EXPECT_EQ(width, 2540);
    EXPECT_EQ(height, 1270);
    facts->Release();
    picture->Release();
}

TEST(TablePictures, AnOwnedBitmapGoesWithThePicture) {
    BitmapFacts facts;
    const BitmapHandle owned = makeBitmap();
    EXPECT_EQ(makePicture(owned, true)->Release(), 0u);
    EXPECT_EQ(gdi32.GetObjectA(owned, facts), 0);
    const BitmapHandle lent = makeBitmap();
    EXPECT_EQ(makePicture(lent, false)->Release(), 0u);
    EXPECT_EQ(gdi32.GetObjectA(lent, facts), 24);
    EXPECT_TRUE(gdi32.DeleteObject(lent));
}

TEST(TablePictures, OneObjectIsOneIdentity) {
    IPictureDisp* picture = makePicture(makeBitmap(), true);
    auto* identity = query<IUnknown>(picture, IID_IUnknown);
    for (const IID& iid : {IID_IPicture, IID_IDispatch, IID_IPersistStream}) {
        auto* part = query<IUnknown>(picture, iid);
        auto* whole = query<IUnknown>(part, IID_IUnknown);
        EXPECT_EQ(whole, identity);
        whole->Release();
        part->Release();
    }
    identity->Release();
    EXPECT_EQ(picture->Release(), 0u);
}

TEST(TablePictures, ThePropertiesHaveTheirPublishedNumbers) {
    const BitmapHandle bitmap = makeBitmap();
    IPictureDisp* picture = makePicture(bitmap, true);
    const auto get = [picture](DISPID id) {
        VARIANT value;
        VariantInit(&value);
        DISPPARAMS none{};
        EXPECT_EQ(picture->Invoke(id, GUID_NULL, 0, DISPATCH_PROPERTYGET, &none, &value, nullptr,
                                  nullptr),
                  S_OK);
        return value;
    };
    EXPECT_EQ(static_cast<std::uint32_t>(get(DISPID_PICT_HANDLE).lVal),
              static_cast<std::uint32_t>(bitmap));
    EXPECT_EQ(get(DISPID_PICT_TYPE).iVal, PICTYPE_BITMAP);
    EXPECT_EQ(get(DISPID_PICT_WIDTH).lVal, 2540);
    EXPECT_EQ(get(DISPID_PICT_HEIGHT).lVal, 1270);
    DISPPARAMS none{};
    VARIANT value;
    VariantInit(&value);
    EXPECT_TRUE(FAILED(
        picture->Invoke(99, GUID_NULL, 0, DISPATCH_PROPERTYGET, &none, &value, nullptr, nullptr)));
    picture->Release();
}

TEST(TablePictures, APictureWithoutContentIsNone) {
    IPictureDisp* picture = nullptr;
    ASSERT_EQ(oleaut32.OleCreatePictureIndirect({}, true, picture), S_OK);
    auto* facts = query<IPicture>(picture, IID_IPicture);
    SHORT type = 9;
    OLE_HANDLE handle = 9;
    EXPECT_EQ(facts->get_Type(&type), S_OK);
    EXPECT_EQ(type, PICTYPE_NONE);
    EXPECT_EQ(facts->get_Handle(&handle), S_OK);
    EXPECT_EQ(handle, 0u);
    facts->Release();
    EXPECT_EQ(picture->Release(), 0u);
}

TEST(TablePictures, SavingWritesAHeaderAndABitmapFile) {
    IPictureDisp* picture = makePicture(makeBitmap(), true);
    auto* persist = query<IPersistStream>(picture, IID_IPersistStream);
    CLSID id{};
    EXPECT_EQ(persist->GetClassID(&id), S_OK);
    EXPECT_EQ(id.Data1, 0x0BE35204u);
    MemoryStream stream;
    EXPECT_EQ(persist->Save(&stream, 1), S_OK);
    ASSERT_GT(stream.bytes.size(), 8u + 54u);
    EXPECT_EQ(Bytes(stream.bytes.begin(), stream.bytes.begin() + 4), (Bytes{'l', 't', 0, 0}));
    std::uint32_t size = 0;
    std::memcpy(&size, stream.bytes.data() + 4, 4);
    EXPECT_EQ(size, stream.bytes.size() - 8);
    EXPECT_EQ(stream.bytes[8], 'B');
    EXPECT_EQ(stream.bytes[9], 'M');
    persist->Release();
    picture->Release();
}

class TablePictureFiles : public test::TempDirTest {};

TEST_F(TablePictureFiles, ABitmapFileIsLoaded) {
    IPictureDisp* picture = nullptr;
    // A wrong extension plays no part.
    ASSERT_EQ(hostRuntime.LoadPicture(dir_.write("a.txt", bmpFile()), picture), 0);
    ASSERT_NE(picture, nullptr);
    auto* facts = query<IPicture>(picture, IID_IPicture);
    OLE_HANDLE handle = 0;
    EXPECT_EQ(facts->get_Handle(&handle), S_OK);
    BitmapFacts bitmap;
    EXPECT_EQ(gdi32.GetObjectA(BitmapHandle{static_cast<std::uint32_t>(handle)}, bitmap), 24);
    EXPECT_EQ(bitmap.width, 3);
    EXPECT_EQ(bitmap.height, 2);
    facts->Release();
    EXPECT_EQ(picture->Release(), 0u);
    EXPECT_EQ(gdi32.GetObjectA(BitmapHandle{static_cast<std::uint32_t>(handle)}, bitmap), 0);
}

TEST_F(TablePictureFiles, WhatCannotBeLoadedHasItsNumber) {
    IPictureDisp* picture = nullptr;
    EXPECT_EQ(hostRuntime.LoadPicture(dir_.file("no"), picture), 53);
    EXPECT_EQ(hostRuntime.LoadPicture(dir_.name(), picture), 75);
    EXPECT_EQ(hostRuntime.LoadPicture(dir_.write("text", "no picture"), picture), 481);
    EXPECT_EQ(hostRuntime.LoadPicture(dir_.write("empty", ""), picture), 481);
    EXPECT_EQ(picture, nullptr);
}

}  // namespace
}  // namespace orvane::platform

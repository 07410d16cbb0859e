#include "platform/gdiplus.h"

#include "platform/gdi32.h"
#include "platform/host_runtime.h"
#include "support/png_file.h"
#include "support/temp_dir.h"

#include <gtest/gtest.h>

#include <fcntl.h>
#include <sys/stat.h>

/// What is ours alone in GDI+ on Linux.
namespace orvane::platform {
namespace {

class LinuxGdiplus : public test::TempDirTest {
protected:
    std::u16string png() {
        test::PngFile file;
        file.width = 3;
        file.height = 2;
        const std::string name = dir_.write("a.png", file.bytes());
        return {name.begin(), name.end()};
    }
};

TEST_F(LinuxGdiplus, NothingWorksBeforeTheStartAndAfterTheShutdown) {
    GdiplusImage image{};
    GdiplusGraphics graphics{};
    const std::u16string name = png();
    EXPECT_EQ(gdiplus.GdipLoadImageFromFile(name, image), GdiplusStatus::notInitialized);
    EXPECT_EQ(gdiplus.GdipCreateFromHDC(DeviceContext::none, graphics),
              GdiplusStatus::notInitialized);
    GdiplusToken one{};
    GdiplusToken two{};
    gdiplus.GdiplusStartup(one, {});
    gdiplus.GdiplusStartup(two, {});
    gdiplus.GdiplusShutdown(one);
    gdiplus.GdiplusShutdown(one);
    EXPECT_EQ(gdiplus.GdipLoadImageFromFile(name, image), GdiplusStatus::ok)
        << "a token counts once";
    gdiplus.GdipDisposeImage(image);
    gdiplus.GdiplusShutdown(two);
    EXPECT_EQ(gdiplus.GdipLoadImageFromFile(name, image), GdiplusStatus::notInitialized);
}

class StartedGdiplus : public LinuxGdiplus {
protected:
    StartedGdiplus() { gdiplus.GdiplusStartup(token_, {}); }
    ~StartedGdiplus() override { gdiplus.GdiplusShutdown(token_); }

    GdiplusToken token_{};
};

TEST_F(StartedGdiplus, StatusesTellWhyAFileIsNotRead) {
    GdiplusImage image{};
    const auto statusOf = [&](const std::string& name) {
        return gdiplus.GdipLoadImageFromFile({name.begin(), name.end()}, image);
    };
    EXPECT_EQ(statusOf(dir_.file("gone.png")), GdiplusStatus::fileNotFound);
    EXPECT_EQ(statusOf(dir_.name()), GdiplusStatus::accessDenied) << "a folder";
    ASSERT_EQ(::mkfifo(dir_.file("pipe").c_str(), 0600), 0);
    EXPECT_EQ(statusOf(dir_.file("pipe")), GdiplusStatus::accessDenied) << "a pipe";
    EXPECT_EQ(statusOf(dir_.write("text.txt", "text")), GdiplusStatus::outOfMemory);
    EXPECT_EQ(statusOf(""), GdiplusStatus::invalidParameter);
    EXPECT_EQ(gdiplus.GdipLoadImageFromFile(u"\xD800", image), GdiplusStatus::fileNotFound);
}

TEST_F(StartedGdiplus, WhatTheHostsLoaderCouldNotDecodeIsNotDecodedAgain) {
    constexpr timespec kSameTime[] = {{1000, 0}, {1000, 0}};
    std::vector<std::uint8_t> bitmap = {'B', 'M', 62, 0, 0, 0, 0, 0, 0, 0, 54, 0, 0, 0,  40,
                                        0,   0,   0,  2, 0, 0, 0, 1, 0, 0, 0,  1, 0, 24, 0};
    bitmap.resize(62);
    const auto write = [&](int depth) {
        bitmap[28] = static_cast<std::uint8_t>(depth);
        const std::string name = dir_.write("a.bmp", bitmap);
        ASSERT_EQ(::utimensat(AT_FDCWD, name.c_str(), kSameTime, 0), 0);
    };
    const auto status = [&] {
        const std::string name = dir_.file("a.bmp");
        GdiplusImage image{};
        const GdiplusStatus result =
            gdiplus.GdipLoadImageFromFile({name.begin(), name.end()}, image);
        if (result == GdiplusStatus::ok) gdiplus.GdipDisposeImage(image);
        return result;
    };
    const auto loadByHost = [&](const std::string& name) {
        IPictureDisp* picture = nullptr;
        return hostRuntime.LoadPicture(name, picture);
    };
    write(24);
    EXPECT_EQ(status(), GdiplusStatus::ok) << "no refusal is remembered of anything";
    write(23);
    EXPECT_EQ(loadByHost(dir_.file("a.bmp")), 481);
    // By what the system tells of it, this is the same file; only its bytes could tell otherwise.
    write(24);
    EXPECT_EQ(status(), GdiplusStatus::outOfMemory);
    EXPECT_EQ(loadByHost(dir_.file("no.bmp")), 53);
    EXPECT_EQ(status(), GdiplusStatus::ok) << "the last refusal alone counts";
}

TEST_F(StartedGdiplus, AFormatThatTheHostsLoaderDoesNotKnowIsNoRefusal) {
    const std::u16string name = png();
    IPictureDisp* picture = nullptr;
    EXPECT_EQ(hostRuntime.LoadPicture(std::string(name.begin(), name.end()), picture), 481);
    GdiplusImage image{};
    EXPECT_EQ(gdiplus.GdipLoadImageFromFile(name, image), GdiplusStatus::ok);
    gdiplus.GdipDisposeImage(image);
}

TEST_F(StartedGdiplus, ANameOutsideTheCodePageIsFound) {
    const std::filesystem::path other = dir_.path() / u"\u65E5\u672C.png";
    std::filesystem::copy_file(std::filesystem::path(png()), other);
    GdiplusImage image{};
    EXPECT_EQ(gdiplus.GdipLoadImageFromFile(other.u16string(), image), GdiplusStatus::ok);
    EXPECT_EQ(gdiplus.GdipDisposeImage(image), GdiplusStatus::ok);
}

TEST_F(StartedGdiplus, AnImageNeedsItsFileNoLonger) {
    const std::u16string name = png();
    GdiplusImage image{};
    ASSERT_EQ(gdiplus.GdipLoadImageFromFile(name, image), GdiplusStatus::ok);
    std::filesystem::remove(std::filesystem::path(name));
    EXPECT_TRUE(dir_.entries().empty());
    EXPECT_EQ(gdiplus.GdipDisposeImage(image), GdiplusStatus::ok);
    EXPECT_EQ(gdiplus.GdipDisposeImage(image), GdiplusStatus::invalidParameter) << "a stale handle";
}

TEST_F(StartedGdiplus, AnotherSizeIsNotImplemented) {
    GdiplusImage image{};
    ASSERT_EQ(gdiplus.GdipLoadImageFromFile(png(), image), GdiplusStatus::ok);
    const DeviceContext dc = gdi32.CreateCompatibleDC(DeviceContext::none);
    GdiplusGraphics graphics{};
    ASSERT_EQ(gdiplus.GdipCreateFromHDC(dc, graphics), GdiplusStatus::ok);
    EXPECT_EQ(gdiplus.GdipDrawImageRectI(graphics, image, 0, 0, 6, 4),
              GdiplusStatus::notImplemented);
    EXPECT_EQ(gdiplus.GdipDrawImageRectI(graphics, image, 0, 0, -3, 2),
              GdiplusStatus::notImplemented);
    gdi32.DeleteDC(dc);
    EXPECT_EQ(gdiplus.GdipDrawImageRectI(graphics, image, 0, 0, 3, 2), GdiplusStatus::genericError)
        << "the context is gone";
    EXPECT_EQ(gdiplus.GdipDeleteGraphics(graphics), GdiplusStatus::ok);
    EXPECT_EQ(gdiplus.GdipDeleteGraphics(graphics), GdiplusStatus::invalidParameter);
    gdiplus.GdipDisposeImage(image);
}

}  // namespace
}  // namespace orvane::platform

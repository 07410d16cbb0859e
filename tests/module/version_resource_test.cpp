#include "libraries.h"

#include <gtest/gtest.h>

namespace orvane::tests {
namespace {

struct VersionResource : testing::Test {
    void SetUp() override {
        const std::string path = builtFile(host::Library::kDefaultName);
        const DWORD size = GetFileVersionInfoSizeA(path.c_str(), nullptr);
        ASSERT_NE(size, 0U);
        data.resize(size);
        ASSERT_NE(GetFileVersionInfoA(path.c_str(), 0, size, data.data()), 0);
    }

    std::wstring text(const wchar_t* name) {
        void* value = nullptr;
        UINT length = 0;
        const std::wstring key = std::wstring(L"\\StringFileInfo\\041904B0\\") + name;
        EXPECT_NE(VerQueryValueW(data.data(), key.c_str(), &value, &length), 0);
        return length == 0 ? L"" : static_cast<const wchar_t*>(value);
    }

    std::vector<char> data;
};

TEST_F(VersionResource, CarriesTheFileVersion) {
    void* value = nullptr;
    UINT length = 0;
    ASSERT_NE(VerQueryValueW(data.data(), L"\\", &value, &length), 0);
    const auto& fixed = *static_cast<const VS_FIXEDFILEINFO*>(value);
    EXPECT_EQ(fixed.dwFileVersionMS, 3U << 16 | 1U);
    EXPECT_EQ(fixed.dwFileVersionLS, 0U << 16 | 251U);
    EXPECT_EQ(text(L"FileVersion"), L"3.01.0251");
}

TEST_F(VersionResource, CarriesTheNames) {
    EXPECT_EQ(text(L"OriginalFilename"), L"OrvaneBase0301.DLL");
    EXPECT_EQ(text(L"FileDescription"), L"Orvane - Библиотека общих функций 3.01");
}

}  // namespace
}  // namespace orvane::tests

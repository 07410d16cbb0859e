#include "platform/kernel32.h"
#include "platform/user32.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <map>
#include <vector>

namespace orvane::platform {
namespace {

constexpr const char* kVariables[] = {"XDG_SESSION_ID", "WAYLAND_DISPLAY", "DISPLAY"};

/// A process without a session and a display; both come back at the end.
class Desktop : public testing::Test {
protected:
    Desktop() {
        for (const char* variable : kVariables) {
            if (const char* value = std::getenv(variable)) before_[variable] = value;
            ::unsetenv(variable);
        }
    }
    ~Desktop() override {
        for (const char* variable : kVariables) {
            const auto found = before_.find(variable);
            found == before_.end() ? ::unsetenv(variable)
                                   : ::setenv(variable, found->second.c_str(), 1);
        }
    }

    static DesktopHandle ours() { return user32.GetThreadDesktop(kernel32.GetCurrentThreadId()); }

    static std::string name() {
        std::vector<std::uint8_t> buffer(200, 0xAA);
        std::uint32_t needed = 0;
        EXPECT_TRUE(
            user32.GetUserObjectInformationA(ours(), UserObjectInformation::name, buffer, needed));
        const std::string text(reinterpret_cast<const char*>(buffer.data()));
        EXPECT_EQ(needed, text.size() + 1);
        return text;
    }

private:
    std::map<std::string, std::string> before_;
};

TEST_F(Desktop, IsNoneWithoutASessionOrDisplay) {
    EXPECT_EQ(ours(), DesktopHandle::none);
    ::setenv("DISPLAY", "", 1);
    EXPECT_EQ(ours(), DesktopHandle::none);
}

TEST_F(Desktop, IsTheSessionBeforeTheDisplay) {
    ::setenv("DISPLAY", ":7", 1);
    EXPECT_EQ(name(), ":7");
    ::setenv("WAYLAND_DISPLAY", "wayland-1", 1);
    EXPECT_EQ(name(), "wayland-1");
    ::setenv("XDG_SESSION_ID", "c2", 1);
    EXPECT_EQ(name(), "c2");
}

TEST_F(Desktop, NameThatDoesNotFitTellsItsSize) {
    ::setenv("DISPLAY", std::string(100, 'd').c_str(), 1);
    std::vector<std::uint8_t> buffer(100, 0xAA);
    std::uint32_t needed = 0;
    EXPECT_FALSE(
        user32.GetUserObjectInformationA(ours(), UserObjectInformation::name, buffer, needed));
    EXPECT_EQ(lastError(), kErrorInsufficientBuffer);
    EXPECT_EQ(needed, 101U);
    EXPECT_EQ(name(), std::string(100, 'd'));
}

TEST_F(Desktop, OfAThreadOfAnotherProcessIsNone) {
    ::setenv("DISPLAY", ":7", 1);
    EXPECT_NE(ours(), DesktopHandle::none);
    for (const std::uint32_t thread : {0u, 1u, 0x7FFFFFFFu}) {
        setLastError(kErrorSuccess);
        EXPECT_EQ(user32.GetThreadDesktop(thread), DesktopHandle::none);
        EXPECT_EQ(lastError(), kErrorInvalidParameter);
    }
}

}  // namespace
}  // namespace orvane::platform

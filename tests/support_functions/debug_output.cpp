#include "support/debug_output.h"

#include "platform/kernel32.h"
#include "support/recorder.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace orvane {
namespace {

class DebugOutput : public testing::Test {
protected:
    std::vector<std::string> written_;
    test::ScopedTarget<void(const std::string&)> capture_{
        platform::kernel32.OutputDebugStringA,
        [this](const std::string& text) { written_.push_back(text); }};
};

TEST_F(DebugOutput, DebugPrintAddsALineEnd) {
    nqDebugPrint(u"one");
    nqDebugPrint(u"");
    EXPECT_EQ(written_, (std::vector<std::string>{"one\r\n", "\r\n"}));
}

TEST_F(DebugOutput, OutputDebugStringHandsOnTheTextAsItIs) {
    nqOutputDebugString(u"one");
    nqOutputDebugString(u"");
    EXPECT_EQ(written_, (std::vector<std::string>{"one", ""}));
}

TEST_F(DebugOutput, TextsGoThroughTheAnsiCodePage) {
    nqOutputDebugString(u"Ж\u4E2D");
    EXPECT_EQ(written_, std::vector<std::string>{"\xC6?"});
}

}  // namespace
}  // namespace orvane

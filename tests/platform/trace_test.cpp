#include "platform/trace.h"

#include <gtest/gtest.h>

namespace orvane::platform {
namespace {

TEST(TraceNames, ReadsAListWithCommas) {
    EXPECT_TRUE(traceNames("kernel32", "kernel32"));
    EXPECT_TRUE(traceNames("gdi32, Kernel32 ", "kernel32"));
    EXPECT_TRUE(traceNames("all", "kernel32"));
    EXPECT_TRUE(traceNames("gdi32,ALL", "kernel32"));
    EXPECT_FALSE(traceNames("", "kernel32"));
    EXPECT_FALSE(traceNames("kernel", "kernel32"));
    EXPECT_FALSE(traceNames("kernel32x,gdi32", "kernel32"));
    EXPECT_FALSE(traceNames(",,", "kernel32"));
}

TEST(TraceLine, NamesTableCallAndResult) {
    const CallRecord call{"kernel32", "DeleteFileA", {}, {"\"a\""}, "true", false, 5};
    EXPECT_EQ(traceLine(call), "orvane: kernel32.DeleteFileA(\"a\") -> true");
}

TEST(TraceLine, AddsTheLastErrorOfAFailure) {
    const CallRecord call{"kernel32", "DeleteFileA", {}, {"\"a\""}, "false", true, 5};
    EXPECT_EQ(traceLine(call), "orvane: kernel32.DeleteFileA(\"a\") -> false, error 5");
}

}  // namespace
}  // namespace orvane::platform

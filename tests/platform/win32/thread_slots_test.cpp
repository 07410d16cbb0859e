#include "platform/kernel32.h"
#include "platform/win32/thread_end.h"

#include <gmock/gmock.h>

#include <thread>
#include <vector>

namespace orvane::platform {
namespace {

// Written by one thread at a time: the tests join before they look.
std::vector<int> ended;

void noteEnd(void* value) {
    ended.push_back(*static_cast<int*>(value));
}

void otherEnd(void*) {
    ended.push_back(-1);
}

class ThreadSlotsTest : public testing::Test {
protected:
    void SetUp() override { ended.clear(); }

    /// What a thread does that sets a slot and ends, with the call that the library's entry
    /// procedure makes.
    static void runThread(std::uint32_t slot, int* value) {
        std::thread([slot, value] {
            EXPECT_EQ(kernel32.TlsGetValue(slot), nullptr);
            EXPECT_TRUE(kernel32.TlsSetValue(slot, value));
            EXPECT_EQ(kernel32.TlsGetValue(slot), value);
            win32ThreadDetach();
            EXPECT_EQ(kernel32.TlsGetValue(slot), nullptr);
        }).join();
    }
};

TEST_F(ThreadSlotsTest, EachThreadsValueGoesToTheCallback) {
    const std::uint32_t slot = kernel32.TlsAlloc(&noteEnd);
    ASSERT_NE(slot, 0xFFFFFFFFu);
    int mine = 1;
    int others = 2;
    EXPECT_TRUE(kernel32.TlsSetValue(slot, &mine));
    runThread(slot, &others);
    EXPECT_THAT(ended, testing::ElementsAre(2));
    EXPECT_EQ(kernel32.TlsGetValue(slot), &mine);
    EXPECT_TRUE(kernel32.TlsFree(slot));
}

TEST_F(ThreadSlotsTest, AnUnsetValueCallsNobody) {
    const std::uint32_t slot = kernel32.TlsAlloc(&noteEnd);
    runThread(slot, nullptr);
    EXPECT_TRUE(ended.empty());
    EXPECT_TRUE(kernel32.TlsFree(slot));
}

TEST_F(ThreadSlotsTest, AFreedSlotsCallbackIsForgotten) {
    const std::uint32_t slot = kernel32.TlsAlloc(&noteEnd);
    EXPECT_TRUE(kernel32.TlsFree(slot));
    EXPECT_FALSE(kernel32.TlsFree(0xFFFFFFFF));
    EXPECT_EQ(lastError(), kErrorInvalidParameter);

    const std::uint32_t next = kernel32.TlsAlloc(&otherEnd);
    int value = 3;
    runThread(next, &value);
    EXPECT_THAT(ended, testing::ElementsAre(-1));
    EXPECT_TRUE(kernel32.TlsFree(next));
}

TEST_F(ThreadSlotsTest, ReadingASlotKeepsTheLastError) {
    const std::uint32_t slot = kernel32.TlsAlloc(nullptr);
    setLastError(77);
    EXPECT_EQ(kernel32.TlsGetValue(slot), nullptr);
    EXPECT_EQ(lastError(), 77u);
    EXPECT_TRUE(kernel32.TlsFree(slot));
}

TEST_F(ThreadSlotsTest, ManySlotsWorkUntilTheSystemHasNoMore) {
    std::vector<std::uint32_t> slots;
    for (std::uint32_t slot = kernel32.TlsAlloc(&noteEnd); slot != 0xFFFFFFFF;
         slot = kernel32.TlsAlloc(&noteEnd)) {
        slots.push_back(slot);
    }
    EXPECT_GT(slots.size(), 1000u);
    int value = 4;
    runThread(slots.back(), &value);
    EXPECT_THAT(ended, testing::ElementsAre(4));
    for (const std::uint32_t slot : slots)
        EXPECT_TRUE(kernel32.TlsFree(slot));
}

}  // namespace
}  // namespace orvane::platform

#include "platform/linux/handle_table.h"
#include "platform/operation.h"

#include <gtest/gtest.h>

#include <atomic>
#include <set>
#include <thread>
#include <vector>

namespace orvane::platform {
namespace {

std::shared_ptr<void> anObject() {
    return std::make_shared<int>(1);
}

TEST(HandleTable, GivesBackTheObject) {
    HandleTable table;
    const auto object = anObject();
    const std::uint32_t handle = table.add(HandleKind::file, object);
    EXPECT_NE(handle, 0u);
    EXPECT_EQ(table.find(HandleKind::file, handle), object);
    EXPECT_EQ(table.count(HandleKind::file), 1u);
    EXPECT_EQ(table.remove(HandleKind::file, handle), object);
    EXPECT_EQ(table.count(HandleKind::file), 0u);
    table.discard();
}

TEST(HandleTable, RefusesWhatIsNoHandleOfTheKind) {
    HandleTable table;
    const std::uint32_t handle = table.add(HandleKind::file, anObject());
    for (const std::uint32_t wrong : {0u, handle + 1, handle + (1u << 20), ~0u}) {
        setLastError(kErrorSuccess);
        EXPECT_EQ(table.find(HandleKind::file, wrong), nullptr);
        EXPECT_EQ(lastError(), kErrorInvalidHandle);
        setLastError(kErrorSuccess);
        EXPECT_EQ(table.remove(HandleKind::file, wrong), nullptr);
        EXPECT_EQ(lastError(), kErrorInvalidHandle);
    }
    EXPECT_EQ(table.remove(HandleKind::bitmap, handle), nullptr);
    EXPECT_NE(table.find(HandleKind::file, handle), nullptr);
    table.discard();
}

TEST(HandleTable, AClosedHandleStaysClosedForAMillionOthers) {
    HandleTable table;
    const auto object = anObject();
    const std::uint32_t closed = table.add(HandleKind::file, object);
    table.remove(HandleKind::file, closed);
    for (int i = 0; i < 1'000'000; ++i) {
        const std::uint32_t handle = table.add(HandleKind::file, object);
        ASSERT_NE(handle, closed);
        ASSERT_NE(handle, 0u);
        table.remove(HandleKind::file, handle);
    }
    EXPECT_EQ(table.find(HandleKind::file, closed), nullptr);
    table.discard();
}

TEST(HandleTable, AnObjectInUseOutlivesItsHandle) {
    HandleTable table;
    std::weak_ptr<void> watched;
    std::uint32_t handle = 0;
    {
        const auto object = anObject();
        watched = object;
        handle = table.add(HandleKind::file, object);
    }
    auto used = table.find(HandleKind::file, handle);
    table.remove(HandleKind::file, handle);
    EXPECT_FALSE(watched.expired());
    used.reset();
    EXPECT_TRUE(watched.expired());
    table.discard();
}

TEST(HandleTable, ADiscardedTableHoldsNothing) {
    HandleTable table;
    const std::uint32_t handle = table.add(HandleKind::file, anObject());
    table.discard();
    EXPECT_EQ(table.find(HandleKind::file, handle), nullptr);
    EXPECT_EQ(table.remove(HandleKind::file, handle), nullptr);
    EXPECT_EQ(table.add(HandleKind::file, anObject()), 0u);
}

TEST(HandleTable, ThreadsGetHandlesOfTheirOwn) {
    HandleTable table;
    std::atomic<int> wrong = 0;
    std::vector<std::thread> threads;
    for (int number = 0; number < 4; ++number) {
        threads.emplace_back([&table, &wrong] {
            for (int i = 0; i < 5000; ++i) {
                const auto object = anObject();
                const std::uint32_t handle = table.add(HandleKind::icon, object);
                wrong += table.find(HandleKind::icon, handle) == object ? 0 : 1;
                wrong += table.remove(HandleKind::icon, handle) == object ? 0 : 1;
                wrong += table.remove(HandleKind::icon, handle) == nullptr ? 0 : 1;
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(wrong.load(), 0);
    EXPECT_EQ(table.count(HandleKind::icon), 0u);
    table.discard();
}

}  // namespace
}  // namespace orvane::platform

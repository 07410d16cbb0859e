#include "platform/kernel32.h"
#include "platform/user32.h"

#include <gtest/gtest.h>

#include <atomic>
#include <random>
#include <thread>
#include <vector>

namespace orvane::platform {
namespace {

std::string uniqueName() {
    static std::random_device random;
    return "orvane table test " + std::to_string(random()) + "-" + std::to_string(random());
}

TEST(Mutexes, FirstIsNewAndTheSecondIsNot) {
    const std::string name = uniqueName();
    setLastError(kErrorAlreadyExists);
    const MutexHandle first = kernel32.CreateMutexA(name);
    EXPECT_NE(first, MutexHandle::none);
    EXPECT_EQ(lastError(), kErrorSuccess);
    const MutexHandle second = kernel32.CreateMutexA(name);
    EXPECT_NE(second, MutexHandle::none);
    EXPECT_NE(second, first);
    EXPECT_EQ(lastError(), kErrorAlreadyExists);
    EXPECT_TRUE(kernel32.CloseMutexHandle(first));
    EXPECT_TRUE(kernel32.CloseMutexHandle(second));
}

TEST(Mutexes, LastHandleEndsTheName) {
    const std::string name = uniqueName();
    const MutexHandle first = kernel32.CreateMutexA(name);
    const MutexHandle second = kernel32.CreateMutexA(name);
    EXPECT_TRUE(kernel32.CloseMutexHandle(first));
    const MutexHandle third = kernel32.CreateMutexA(name);
    EXPECT_EQ(lastError(), kErrorAlreadyExists);
    EXPECT_TRUE(kernel32.CloseMutexHandle(second));
    EXPECT_TRUE(kernel32.CloseMutexHandle(third));
    const MutexHandle fourth = kernel32.CreateMutexA(name);
    EXPECT_EQ(lastError(), kErrorSuccess);
    EXPECT_TRUE(kernel32.CloseMutexHandle(fourth));
}

TEST(Mutexes, HandleClosedTwiceIsRefusedAndHarmsNobody) {
    const std::string name = uniqueName();
    const MutexHandle stale = kernel32.CreateMutexA(name);
    EXPECT_TRUE(kernel32.CloseMutexHandle(stale));
    std::vector<MutexHandle> later;
    for (int i = 0; i < 20; ++i) {
        later.push_back(kernel32.CreateMutexA(name + std::to_string(i)));
        EXPECT_EQ(lastError(), kErrorSuccess);
        setLastError(kErrorSuccess);
        EXPECT_FALSE(kernel32.CloseMutexHandle(stale));
        EXPECT_EQ(lastError(), kErrorInvalidHandle);
    }
    for (const MutexHandle each : later)
        EXPECT_TRUE(kernel32.CloseMutexHandle(each));
    EXPECT_FALSE(kernel32.CloseMutexHandle(MutexHandle::none));
    EXPECT_EQ(lastError(), kErrorInvalidHandle);
}

TEST(Mutexes, NamesAreKeptApartByEveryByte) {
    const std::string name = uniqueName();
    const MutexHandle first = kernel32.CreateMutexA(name + " Aa\xC0");
    for (const char* other : {" aa\xC0", " Aa", " Aa\xE0", " Aa\xC0 "}) {
        const MutexHandle handle = kernel32.CreateMutexA(name + other);
        EXPECT_EQ(lastError(), kErrorSuccess) << other;
        EXPECT_TRUE(kernel32.CloseMutexHandle(handle));
    }
    EXPECT_TRUE(kernel32.CloseMutexHandle(first));
}

TEST(Mutexes, NulEndsAName) {
    const std::string name = uniqueName();
    const MutexHandle first = kernel32.CreateMutexA(name + std::string("\0a", 2));
    const MutexHandle second = kernel32.CreateMutexA(name + std::string("\0b", 2));
    EXPECT_EQ(lastError(), kErrorAlreadyExists);
    EXPECT_TRUE(kernel32.CloseMutexHandle(first));
    EXPECT_TRUE(kernel32.CloseMutexHandle(second));
}

TEST(Mutexes, WithoutANameAreNobodyElses) {
    const MutexHandle first = kernel32.CreateMutexA("");
    EXPECT_EQ(lastError(), kErrorSuccess);
    const MutexHandle second = kernel32.CreateMutexA("");
    EXPECT_EQ(lastError(), kErrorSuccess);
    EXPECT_NE(first, second);
    EXPECT_TRUE(kernel32.CloseMutexHandle(first));
    EXPECT_TRUE(kernel32.CloseMutexHandle(second));
}

TEST(Mutexes, OneThreadOfManyIsFirst) {
    for (int round = 0; round < 20; ++round) {
        const std::string name = uniqueName();
        std::atomic<int> first = 0;
        std::atomic<bool> started = false;
        std::vector<MutexHandle> held(8);
        std::vector<std::thread> threads;
        for (MutexHandle& handle : held) {
            threads.emplace_back([&] {
                while (!started)
                    std::this_thread::yield();
                handle = kernel32.CreateMutexA(name);
                if (lastError() == kErrorSuccess) ++first;
            });
        }
        started = true;
        for (std::thread& thread : threads)
            thread.join();
        EXPECT_EQ(first, 1) << "round " << round;
        for (const MutexHandle handle : held)
            EXPECT_TRUE(kernel32.CloseMutexHandle(handle));
    }
}

TEST(Threads, HaveNumbersOfTheirOwn) {
    const std::uint32_t mine = kernel32.GetCurrentThreadId();
    std::uint32_t other = 0;
    std::thread([&] { other = kernel32.GetCurrentThreadId(); }).join();
    EXPECT_NE(mine, 0u);
    EXPECT_NE(other, 0u);
    EXPECT_NE(other, mine);
    EXPECT_EQ(kernel32.GetCurrentThreadId(), mine);
}

TEST(UserObjects, NoObjectGivesNoName) {
    std::vector<std::uint8_t> buffer(100);
    std::uint32_t needed = 0;
    EXPECT_FALSE(user32.GetUserObjectInformationA(DesktopHandle::none, UserObjectInformation::name,
                                                  buffer, needed));
    EXPECT_EQ(lastError(), kErrorInvalidHandle);
}

}  // namespace
}  // namespace orvane::platform

#include "frame/automation/apartment.h"

#include "main/orvMain.h"
#include "pictures/PictureInfo.h"
#include "platform/kernel32.h"
#include "support/recorder.h"

#ifdef _WIN32
#include "platform/win32/thread_end.h"
#endif

#include <gtest/gtest.h>

#include <array>
#include <atomic>
#include <string>
#include <thread>
#include <vector>

/// What exists once per thread that uses the library, and when it goes.
namespace orvane {
namespace {

using automation::Apartment;
using automation::ApartmentState;
using platform::kernel32;
using test::Recorder;
using test::ScopedTarget;

/// Runs `action` on a thread of its own, with its end as the module's entry procedure sees it: a
/// program of ours is no module that the system tells of it.
template <class Action>
void onOwnThread(Action action) {
    std::thread([&] {
        action();
#ifdef _WIN32
        platform::win32ThreadDetach();
#endif
    }).join();
}

/// Counts how many of it there are.
struct Counted {
    Counted() { ++alive; }
    ~Counted() { --alive; }
    Counted(const Counted&) = delete;
    Counted& operator=(const Counted&) = delete;
    int value = 0;
    inline static std::atomic<int> alive = 0;
};

constinit ApartmentState<Counted> counted;

TEST(ApartmentTest, IsSeededFromTheClockOnceAtItsStart) {
    onOwnThread([] {
        Recorder recorder(kernel32);
        const auto first = make<PictureInfo>();
        EXPECT_EQ(recorder.count("GetSystemTimeAsFileTime"), 1U);
        const auto second = make<orvMain>();
        apartmentRandom().next32();
        EXPECT_EQ(recorder.count("GetSystemTimeAsFileTime"), 1U);
    });
}

TEST(ApartmentTest, IsNotStartedByAThreadThatOnlyLooks) {
    onOwnThread([] {
        Recorder recorder(kernel32);
        EXPECT_EQ(Apartment::existing(), nullptr);
        EXPECT_EQ(counted.existing(), nullptr);
        counted.drop();
        Apartment::releaseIdle();
        EXPECT_EQ(Apartment::existing(), nullptr);
        EXPECT_EQ(recorder.count("GetSystemTimeAsFileTime"), 0U);
    });
}

TEST(ApartmentTest, IsNotSeededAgainWhenAHostComesBack) {
    onOwnThread([] {
        make<PictureInfo>();
        Recorder recorder(kernel32);
        make<PictureInfo>();
        EXPECT_EQ(recorder.count("GetSystemTimeAsFileTime"), 0U);
    });
}

TEST(ApartmentTest, OfTheSameTimeHasTheSameRandomNumbers) {
    ScopedTarget clock(kernel32.GetSystemTimeAsFileTime, [] { return std::uint64_t{12345}; });
    RandomGenerator expected;
    expected.seed(12345);
    const std::uint32_t first = expected.next32();
    for (int run = 0; run < 2; ++run) {
        onOwnThread([=] { EXPECT_EQ(apartmentRandom().next32(), first); });
    }
}

TEST(ApartmentTest, KeepsStateOfItsOwnForEachThread) {
    onOwnThread([] {
        const auto keep = make<PictureInfo>();
        counted.get().value = 1;
        onOwnThread([] {
            const auto keepToo = make<PictureInfo>();
            EXPECT_EQ(counted.get().value, 0);
            counted.get().value = 2;
            EXPECT_EQ(Counted::alive, 2);
        });
        EXPECT_EQ(counted.get().value, 1);
        EXPECT_EQ(Counted::alive, 1);
    });
    EXPECT_EQ(Counted::alive, 0);
}

TEST(ApartmentTest, KeepsItsStateUntilTheLastObjectGoes) {
    onOwnThread([] {
        auto first = make<PictureInfo>();
        auto second = make<orvMain>();
        counted.get().value = 5;
        first = nullptr;
        ASSERT_NE(counted.existing(), nullptr);
        EXPECT_EQ(counted.existing()->value, 5);
        second = nullptr;
        EXPECT_EQ(counted.existing(), nullptr);
        EXPECT_EQ(Counted::alive, 0);
    });
}

TEST(ApartmentTest, DropsAStateOnRequest) {
    onOwnThread([] {
        const auto keep = make<PictureInfo>();
        counted.get();
        counted.drop();
        EXPECT_EQ(Counted::alive, 0);
        counted.get();
        EXPECT_EQ(Counted::alive, 1);
    });
}

TEST(ApartmentTest, ReleasesAnIdleState) {
    onOwnThread([] {
        counted.get();
        Apartment::releaseIdle();
        EXPECT_EQ(Counted::alive, 0);
        const auto keep = make<PictureInfo>();
        counted.get();
        Apartment::releaseIdle();
        EXPECT_EQ(Counted::alive, 1) << "an object is alive";
    });
}

TEST(ApartmentTest, EndsItsStateWithItsThread) {
    onOwnThread([] { counted.get(); });
    EXPECT_EQ(Counted::alive, 0);
}

struct First {
    ~First() { ended.push_back("first"); }
    inline static std::vector<std::string> ended;
};
struct Second {
    ~Second() { First::ended.push_back("second"); }
};
constinit ApartmentState<First> firstState;
constinit ApartmentState<Second> secondState;

TEST(ApartmentTest, ReleasesStatesInTheReverseOfTheirOrder) {
    onOwnThread([] {
        const auto keep = make<PictureInfo>();
        firstState.get();
        secondState.get();
        EXPECT_EQ(First::ended, std::vector<std::string>());
    });
    EXPECT_EQ(First::ended, (std::vector<std::string>{"second", "first"}));
}

TEST(ApartmentTest, CountsTheLiveObjectsOfAllThreads) {
    const std::uint32_t before = Apartment::liveObjects();
    const auto mine = make<PictureInfo>();
    onOwnThread([=] {
        const auto theirs = make<orvMain>();
        EXPECT_EQ(Apartment::liveObjects(), before + 2);
    });
    EXPECT_EQ(Apartment::liveObjects(), before + 1);
}

TEST(ApartmentTest, CountsACachedCommandLineAsAnObject) {
    const std::uint32_t before = Apartment::liveObjects();
    onOwnThread([=] {
        auto main = make<orvMain>();
        main->CommandLine();
        EXPECT_EQ(Apartment::liveObjects(), before + 2);
        main = nullptr;
        EXPECT_EQ(Apartment::liveObjects(), before);
    });
}

TEST(ApartmentTest, AnObjectOutlivesItsThread) {
    const std::uint32_t before = Apartment::liveObjects();
    Ref<PictureInfo> object;
    onOwnThread([&] {
        object = make<PictureInfo>();
        counted.get();
    });
    EXPECT_EQ(Apartment::liveObjects(), before + 1);
    EXPECT_EQ(object->GetPictureTypeName(), u"Nothing");
    object = nullptr;
    EXPECT_EQ(Apartment::liveObjects(), before);
    EXPECT_EQ(Counted::alive, 0);
}

TEST(ApartmentTest, SeveralObjectsOutliveTheirThread) {
    const std::uint32_t before = Apartment::liveObjects();
    std::vector<Ref<PictureInfo>> objects;
    for (int thread = 0; thread < 3; ++thread) {
        onOwnThread([&] {
            for (int i = 0; i < 4; ++i)
                objects.push_back(make<PictureInfo>());
        });
    }
    EXPECT_EQ(Apartment::liveObjects(), before + 12);
    objects.clear();
    EXPECT_EQ(Apartment::liveObjects(), before);
}

TEST(ApartmentTest, AnObjectMayGoOnAnotherThreadWhileItsOwnLives) {
    const std::uint32_t before = Apartment::liveObjects();
    Ref<PictureInfo> object = make<PictureInfo>();
    onOwnThread([&] { object = nullptr; });
    EXPECT_EQ(Apartment::liveObjects(), before);
    make<PictureInfo>();
    EXPECT_EQ(Apartment::liveObjects(), before);
}

TEST(ApartmentTest, ManyThreadsAtOnceKeepTheCountRight) {
    const std::uint32_t before = Apartment::liveObjects();
    std::array<std::thread, 8> threads;
    for (std::thread& thread : threads) {
        thread = std::thread([] {
            for (int i = 0; i < 200; ++i) {
                const auto main = make<orvMain>();
                main->CommandLine();
            }
#ifdef _WIN32
            platform::win32ThreadDetach();
#endif
        });
    }
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(Apartment::liveObjects(), before);
}

}  // namespace
}  // namespace orvane

#include "sample_class.h"

#include "frame/automation/apartment.h"
#include "platform/kernel32.h"
#include "support/recorder.h"

#include <gtest/gtest.h>

#include <thread>

namespace orvane::automation {
namespace {

int statesAlive = 0;
std::vector<int> ended;

struct Counted {
    Counted() { ++statesAlive; }
    ~Counted() {
        --statesAlive;
        ended.push_back(number);
    }
    int number = 0;
};

constinit ApartmentState<Counted> firstState;
constinit ApartmentState<Counted> secondState;

TEST(Apartment, CountsTheObjectsOfAllThreads) {
    const std::uint32_t before = Apartment::liveObjects();
    const Ref<test::Sample> here = make<test::Sample>();
    std::thread([&] {
        const Ref<test::Sample> there = make<test::Sample>();
        EXPECT_EQ(Apartment::liveObjects(), before + 2);
    }).join();
    EXPECT_EQ(Apartment::liveObjects(), before + 1);
}

TEST(Apartment, EachThreadHasStateOfItsOwn) {
    const Ref<test::Sample> keep = make<test::Sample>();
    firstState.get().number = 1;
    std::thread([] {
        const Ref<test::Sample> object = make<test::Sample>();
        EXPECT_EQ(firstState.existing(), nullptr);
        EXPECT_EQ(firstState.get().number, 0);
    }).join();
    EXPECT_EQ(firstState.get().number, 1);
}

TEST(Apartment, StateIsReleasedWithTheLastObjectTheLatestFirst) {
    ended.clear();
    Ref<test::Sample> one = make<test::Sample>();
    Ref<test::Sample> two = make<test::Sample>();
    firstState.get().number = 1;
    secondState.get().number = 2;
    one = nullptr;
    EXPECT_EQ(statesAlive, 2);
    two = nullptr;
    EXPECT_EQ(statesAlive, 0);
    EXPECT_EQ(ended, (std::vector<int>{2, 1}));
}

TEST(Apartment, DroppedStateIsMadeAnew) {
    const Ref<test::Sample> keep = make<test::Sample>();
    firstState.get().number = 5;
    firstState.drop();
    EXPECT_EQ(firstState.existing(), nullptr);
    EXPECT_EQ(firstState.get().number, 0);
}

TEST(Apartment, IdleStateIsReleasedOnRequest) {
    firstState.get().number = 3;
    {
        const Ref<test::Sample> keep = make<test::Sample>();
        Apartment::releaseIdle();
        EXPECT_NE(firstState.existing(), nullptr);
    }
    firstState.get().number = 4;
    Apartment::releaseIdle();
    EXPECT_EQ(firstState.existing(), nullptr);
}

Ref<test::Sample> madeAtTheEnd;
constinit ApartmentState<int> stateOfTheNewObject;

/// A state whose end makes an object with a state of its own.
struct Restarting {
    ~Restarting() {
        madeAtTheEnd = make<test::Sample>();
        stateOfTheNewObject.get() = 3;
    }
};
constinit ApartmentState<Restarting> restartingState;

TEST(Apartment, AnObjectThatIsMadeDuringTheReleaseKeepsItsState) {
    {
        const auto object = make<test::Sample>();
        restartingState.get();
    }
    ASSERT_TRUE(madeAtTheEnd);
    ASSERT_NE(stateOfTheNewObject.existing(), nullptr);
    EXPECT_EQ(*stateOfTheNewObject.existing(), 3);
    madeAtTheEnd = nullptr;
    EXPECT_EQ(stateOfTheNewObject.existing(), nullptr);
}

TEST(Apartment, TheGeneratorIsSeededOncePerThread) {
    std::thread([] {
        test::Recorder recorder(platform::kernel32);
        make<test::Sample>();
        make<test::Sample>();
        apartmentRandom().next32();
        EXPECT_EQ(recorder.count("GetSystemTimeAsFileTime"), 1U);
    }).join();
}

TEST(Apartment, AnObjectMayOutliveItsThread) {
    Ref<test::Sample> object;
    const std::uint32_t before = Apartment::liveObjects();
    std::thread([&] {
        object = make<test::Sample>();
        object->setNumber(8);
    }).join();
    EXPECT_EQ(object->Number(), 8);
    EXPECT_EQ(Apartment::liveObjects(), before + 1);
    object = nullptr;
    EXPECT_EQ(Apartment::liveObjects(), before);
}

}  // namespace
}  // namespace orvane::automation

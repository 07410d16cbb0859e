// Real processes that compete for one name. They are forked, so this is for Linux alone.
#include "platform/kernel32.h"
#include "unique_name.h"
#include "utilities/orvAlone.h"

#include <gtest/gtest.h>

#include <atomic>
#include <csignal>
#include <functional>
#include <pthread.h>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace orvane {
namespace {

using test::uniqueName;

constexpr unsigned kLongestLife = 300;  // seconds, for a process whose test went wrong

/// A process that runs `body` and ends without what the test program does at its end.
class Process {
public:
    explicit Process(const std::function<int()>& body) : id_(::fork()) {
        if (id_ != 0) return;
        ::alarm(kLongestLife);
        ::_exit(body());
    }
    ~Process() { kill(); }
    Process(const Process&) = delete;
    Process& operator=(const Process&) = delete;

    /// The exit status; -1 when a signal ended it.
    int wait() {
        int status = 0;
        if (id_ <= 0 || ::waitpid(id_, &status, 0) != id_) return -1;
        id_ = 0;
        return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    }
    void kill() {
        if (id_ <= 0) return;
        ::kill(id_, SIGKILL);
        wait();
    }

private:
    pid_t id_;
};

/// What processes tell each other: bytes through a pipe.
class Signal {
public:
    Signal() { EXPECT_EQ(::pipe(ends_), 0); }
    ~Signal() {
        ::close(ends_[0]);
        ::close(ends_[1]);
    }
    Signal(const Signal&) = delete;
    Signal& operator=(const Signal&) = delete;
    void send(char what) { EXPECT_EQ(::write(ends_[1], &what, 1), 1); }
    char receive() {
        char what = 0;
        EXPECT_EQ(::read(ends_[0], &what, 1), 1);
        return what;
    }

private:
    int ends_[2] = {-1, -1};
};

char answer(bool alone) {
    return alone ? 'y' : 'n';
}

[[noreturn]] void linger() {
    for (;;)
        ::pause();
}

constexpr int kRacers = 50;
constexpr int kRaces = 200;

/// In memory that the racers share.
struct Track {
    pthread_barrier_t barrier;
    std::atomic<int> alone[kRaces];
};

int race(Track& track, const std::u16string& name) {
    for (std::atomic<int>& alone : track.alone) {
        const auto object = make<orvAlone>();
        ::pthread_barrier_wait(&track.barrier);
        if (object->IsAlone(name)) ++alone;
        ::pthread_barrier_wait(&track.barrier);
    }
    return 0;
}

TEST(orvAloneProcesses, OfFiftyThatRaceForANameOneIsAloneEachTime) {
    const auto name = uniqueName();
    void* memory =
        ::mmap(nullptr, sizeof(Track), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
    ASSERT_NE(memory, MAP_FAILED);
    auto* track = new (memory) Track{};
    pthread_barrierattr_t shared;
    ::pthread_barrierattr_init(&shared);
    ::pthread_barrierattr_setpshared(&shared, PTHREAD_PROCESS_SHARED);
    ASSERT_EQ(::pthread_barrier_init(&track->barrier, &shared, kRacers), 0);
    {
        std::vector<std::unique_ptr<Process>> racers;
        for (int i = 0; i < kRacers; ++i) {
            racers.push_back(std::make_unique<Process>([&] { return race(*track, name); }));
        }
        for (auto& racer : racers)
            EXPECT_EQ(racer->wait(), 0);
    }
    for (int i = 0; i < kRaces; ++i)
        EXPECT_EQ(track->alone[i], 1) << "race " << i;
    ::munmap(memory, sizeof(Track));
}

TEST(orvAloneProcesses, SecondIsNotAloneUntilTheFirstEnds) {
    const auto name = uniqueName();
    Signal told;
    Signal end;
    Process first([&] {
        const auto object = make<orvAlone>();
        told.send(answer(object->IsAlone(name)));
        end.receive();
        return 0;
    });
    EXPECT_EQ(told.receive(), 'y');
    EXPECT_FALSE(make<orvAlone>()->IsAlone(name));
    end.send('.');
    EXPECT_EQ(first.wait(), 0);
    EXPECT_TRUE(make<orvAlone>()->IsAlone(name));
}

TEST(orvAloneProcesses, NextIsAloneAtOnceWhenTheHolderIsKilled) {
    const auto name = uniqueName();
    for (int i = 0; i < 20; ++i) {
        Signal told;
        Process holder([&] {
            const auto object = make<orvAlone>();
            told.send(answer(object->IsAlone(name)));
            linger();
            return 0;
        });
        ASSERT_EQ(told.receive(), 'y') << i;
        holder.kill();
    }
    EXPECT_TRUE(make<orvAlone>()->IsAlone(name));
}

TEST(orvAloneProcesses, ProcessThatIsKilledWhileItTakesOrLetsGoLeavesTheNameFree) {
    const auto name = uniqueName();
    for (int i = 0; i < 100; ++i) {
        Signal told;
        Process busy([&] {
            told.send('s');
            for (;;)
                make<orvAlone>()->IsAlone(name);
            return 0;
        });
        ASSERT_EQ(told.receive(), 's');
        ::usleep(static_cast<useconds_t>(i) * 10);
        busy.kill();
        ASSERT_TRUE(make<orvAlone>()->IsAlone(name)) << i;
    }
}

TEST(orvAloneProcesses, ChildOfAKilledHolderDoesNotKeepTheName) {
    const auto name = uniqueName();
    Signal told;
    Signal childReady;
    void* memory = ::mmap(nullptr, sizeof(std::atomic<pid_t>), PROT_READ | PROT_WRITE,
                          MAP_SHARED | MAP_ANONYMOUS, -1, 0);
    ASSERT_NE(memory, MAP_FAILED);
    auto& childId = *new (memory) std::atomic<pid_t>(0);
    Process holder([&] {
        const auto object = make<orvAlone>();
        const bool alone = object->IsAlone(name);
        if (::fork() == 0) {
            ::alarm(kLongestLife);
            told.send(answer(alone));
            childId.store(::getpid());
            childReady.send('c');
            linger();
        }
        linger();
        return 0;
    });
    EXPECT_EQ(told.receive(), 'y');
    EXPECT_EQ(childReady.receive(), 'c');
    const pid_t survivor = childId;
    holder.kill();
    EXPECT_EQ(::kill(survivor, 0), 0) << "the child is alive";
    EXPECT_TRUE(make<orvAlone>()->IsAlone(name));
    ::kill(survivor, SIGKILL);
    ::munmap(memory, sizeof(std::atomic<pid_t>));
}

TEST(orvAloneProcesses, ChildThatEndsItsCopyDoesNotTakeTheNameFromItsParent) {
    const auto name = uniqueName();
    auto object = make<orvAlone>();
    EXPECT_TRUE(object->IsAlone(name));
    Process child([&] {
        object = {};
        return make<orvAlone>()->IsAlone(name) ? 1 : 0;
    });
    EXPECT_EQ(child.wait(), 0);
    EXPECT_FALSE(make<orvAlone>()->IsAlone(name));
}

TEST(orvAloneProcesses, ParentLetsGoOfTheNameWhileItsChildLives) {
    const auto name = uniqueName();
    auto object = make<orvAlone>();
    EXPECT_TRUE(object->IsAlone(name));
    Process child([] {
        linger();
        return 0;
    });
    object = {};
    EXPECT_TRUE(make<orvAlone>()->IsAlone(name));
}

TEST(orvAloneProcesses, AnotherUsersNameIsDenied) {
    if (::geteuid() != 0) GTEST_SKIP() << "only root can become another user";
    constexpr uid_t kNobody = 65534;
    const auto name = uniqueName();
    const auto asNobody = [&](Signal& told, Signal& end) {
        if (::setresgid(kNobody, kNobody, kNobody) != 0) return 2;
        if (::setresuid(kNobody, kNobody, kNobody) != 0) return 2;
        const auto object = make<orvAlone>();
        const bool alone = object->IsAlone(name);
        const bool denied = platform::lastError() == platform::kErrorAccessDenied;
        told.send(denied ? 'd' : answer(alone));
        end.receive();
        return alone && denied ? 3 : 0;
    };
    Signal told;
    Signal end;
    {
        Process holder([&] { return asNobody(told, end); });
        EXPECT_EQ(told.receive(), 'y');
        EXPECT_FALSE(make<orvAlone>()->IsAlone(name));
        EXPECT_EQ(platform::lastError(), platform::kErrorAccessDenied);
        end.send('.');
        EXPECT_EQ(holder.wait(), 0);
    }
    const auto ours = make<orvAlone>();
    EXPECT_TRUE(ours->IsAlone(name));
    Process other([&] { return asNobody(told, end); });
    EXPECT_EQ(told.receive(), 'd');
    end.send('.');
    EXPECT_EQ(other.wait(), 0);
}

}  // namespace
}  // namespace orvane

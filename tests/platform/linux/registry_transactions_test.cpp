#include "registry_fixture.h"

#include <csignal>
#include <pthread.h>
#include <thread>

namespace orvane::platform {
namespace {

struct RegistryTransactionsLinux : RegistryStoreLinux {};

TEST_F(RegistryTransactionsLinux, CommitMakesAllOfItLast) {
    EXPECT_EQ(write(kHkeyCurrentUser, "a", "v", "old"), 0u);
    EXPECT_EQ(number(registryTransactions.Begin()), 0u);
    EXPECT_EQ(write(kHkeyCurrentUser, "a", "v", "new"), 0u);
    EXPECT_EQ(write(kHkeyCurrentUser, "b\\c", "v", "new"), 0u);
    EXPECT_EQ(write(kHkeyLocalMachine, "m", "v", "new"), 0u);
    EXPECT_EQ(read(kHkeyCurrentUser, "b\\c", "v"), "new");
    EXPECT_EQ(number(registryTransactions.Commit()), 0u);
    store_.closeDatabases();
    EXPECT_EQ(read(kHkeyCurrentUser, "a", "v"), "new");
    EXPECT_EQ(read(kHkeyCurrentUser, "b\\c", "v"), "new");
    EXPECT_EQ(read(kHkeyLocalMachine, "m", "v"), "new");
}

TEST_F(RegistryTransactionsLinux, RollbackUndoesAllOfIt) {
    EXPECT_EQ(write(kHkeyCurrentUser, "a", "v", "old"), 0u);
    EXPECT_EQ(number(registryTransactions.Begin()), 0u);
    EXPECT_EQ(write(kHkeyCurrentUser, "a", "v", "new"), 0u);
    EXPECT_EQ(number(shlwapi.SHDeleteKeyA(kHkeyCurrentUser, "a")), 0u);
    EXPECT_EQ(number(shlwapi.SHDeleteKeyA(kHkeyCurrentUser, "none")), kErrorFileNotFound);
    EXPECT_EQ(write(kHkeyCurrentUser, "b", "v", "new"), 0u);
    EXPECT_EQ(number(registryTransactions.Rollback()), 0u);
    EXPECT_EQ(read(kHkeyCurrentUser, "a", "v"), "old");
    EXPECT_EQ(read(kHkeyCurrentUser, "b", "v"), "(2)");
}

TEST_F(RegistryTransactionsLinux, EndOfTheProcessUndoesAllOfIt) {
    EXPECT_EQ(write(kHkeyCurrentUser, "a", "v", "old"), 0u);
    EXPECT_EQ(inChild([&] {
                  registryTransactions.Begin();
                  write(kHkeyCurrentUser, "a", "v", "new");
                  ::raise(SIGKILL);
                  return 0;
              }),
              1000 + SIGKILL);
    EXPECT_EQ(read(kHkeyCurrentUser, "a", "v"), "old");
}

TEST_F(RegistryTransactionsLinux, OneAtATimeAndNoneWithoutABegin) {
    EXPECT_NE(number(registryTransactions.Commit()), 0u);
    EXPECT_NE(number(registryTransactions.Rollback()), 0u);
    EXPECT_EQ(number(registryTransactions.Begin()), 0u);
    EXPECT_NE(number(registryTransactions.Begin()), 0u);
    EXPECT_EQ(write(kHkeyCurrentUser, "a", "v", "x"), 0u);
    EXPECT_EQ(number(registryTransactions.Commit()), 0u);
    EXPECT_EQ(read(kHkeyCurrentUser, "a", "v"), "x");
}

TEST_F(RegistryTransactionsLinux, OtherThreadsWaitUntilItEnds) {
    EXPECT_EQ(write(kHkeyCurrentUser, "a", "v", "old"), 0u);
    EXPECT_EQ(number(registryTransactions.Begin()), 0u);
    EXPECT_EQ(write(kHkeyCurrentUser, "a", "v", "new"), 0u);
    std::string found;
    std::thread other([&] { found = read(kHkeyCurrentUser, "a", "v"); });
    std::this_thread::sleep_for(std::chrono::milliseconds(50));
    EXPECT_EQ(number(registryTransactions.Commit()), 0u);
    other.join();
    EXPECT_EQ(found, "new");
}

TEST_F(RegistryTransactionsLinux, EndOfTheThreadUndoesAllOfIt) {
    EXPECT_EQ(write(kHkeyCurrentUser, "a", "v", "old"), 0u);
    EXPECT_EQ(write(kHkeyLocalMachine, "a", "v", "old"), 0u);
    std::thread([] {
        EXPECT_EQ(number(registryTransactions.Begin()), 0u);
        EXPECT_EQ(write(kHkeyCurrentUser, "a", "v", "new"), 0u);
        EXPECT_EQ(write(kHkeyLocalMachine, "a", "v", "new"), 0u);
    }).join();
    EXPECT_EQ(read(kHkeyCurrentUser, "a", "v"), "old");
    EXPECT_EQ(read(kHkeyLocalMachine, "a", "v"), "old");
    EXPECT_EQ(number(registryTransactions.Begin()), 0u);
    EXPECT_EQ(write(kHkeyCurrentUser, "a", "v", "next"), 0u);
    EXPECT_EQ(number(registryTransactions.Commit()), 0u);
    EXPECT_EQ(read(kHkeyCurrentUser, "a", "v"), "next");
}

/// The store waits in the system's functions, in each of which a thread may be cancelled.
TEST_F(RegistryTransactionsLinux, CancelledThreadEndsItsCallFirst) {
    EXPECT_EQ(write(kHkeyCurrentUser, "a", "v", "x"), 0u);
    const auto worker = [](void*) -> void* {
        for (;;) {
            write(kHkeyCurrentUser, "a", "v", "x");
            write(kHkeyLocalMachine, "a", "v", "x");
            registryTransactions.Begin();
            write(kHkeyCurrentUser, "a", "v", "never committed");
            registryTransactions.Rollback();
            ::pthread_testcancel();
        }
    };
    for (useconds_t i = 0; i < 20; ++i) {
        pthread_t thread{};
        ASSERT_EQ(::pthread_create(&thread, nullptr, worker, nullptr), 0);
        ::usleep(1000 + 700 * i);
        EXPECT_EQ(::pthread_cancel(thread), 0);
        void* result = nullptr;
        EXPECT_EQ(::pthread_join(thread, &result), 0);
        EXPECT_EQ(result, PTHREAD_CANCELED);
        EXPECT_EQ(read(kHkeyCurrentUser, "a", "v"), "x");
    }
    EXPECT_EQ(write(kHkeyCurrentUser, "a", "v", "y"), 0u);
    EXPECT_EQ(write(kHkeyLocalMachine, "a", "v", "y"), 0u);
    EXPECT_EQ(read(kHkeyLocalMachine, "a", "v"), "y");
}

TEST_F(RegistryTransactionsLinux, ForkLosesItAndSaysSo) {
    EXPECT_EQ(write(kHkeyCurrentUser, "a", "v", "old"), 0u);
    EXPECT_EQ(number(registryTransactions.Begin()), 0u);
    EXPECT_EQ(write(kHkeyCurrentUser, "a", "v", "new"), 0u);
    EXPECT_EQ(inChild([] { return 0; }), 0);
    EXPECT_EQ(write(kHkeyCurrentUser, "b", "v", "new"), 6701u);
    EXPECT_EQ(number(registryTransactions.Commit()), 6701u);
    EXPECT_EQ(read(kHkeyCurrentUser, "a", "v"), "old");
    EXPECT_EQ(read(kHkeyCurrentUser, "b", "v"), "(2)");
}

TEST_F(RegistryTransactionsLinux, FullDiskUndoesAllOfIt) {
    for (const RegistryKey root : {kHkeyCurrentUser, kHkeyLocalMachine}) {
        EXPECT_EQ(write(root, "a", "v", "old"), 0u);
        EXPECT_EQ(inChild([&] {
                      registryTransactions.Begin();
                      EXPECT_EQ(write(root, "a", "v", "new"), 0u);
                      limitFiles(400000);
                      std::uint32_t code = 0;
                      int written = 0;
                      for (; written < 100 && code == 0; ++written) {
                          code =
                              write(root, "a", std::to_string(written), std::string(300000, 'x'));
                      }
                      // What was begun is lost with the call that failed.
                      EXPECT_EQ(code, kErrorDiskFull);
                      EXPECT_EQ(write(root, "a", "v", "newer"), 6701u);
                      EXPECT_EQ(number(registryTransactions.Commit()), 6701u);
                      EXPECT_EQ(read(root, "a", "v"), "old");
                      EXPECT_EQ(write(root, "a", "v", "small"), 0u);
                      return testing::Test::HasFailure() ? 1 : 0;
                  }),
                  0);
        EXPECT_EQ(read(root, "a", "v"), "small");
    }
}

TEST_F(RegistryTransactionsLinux, FullDiskAtTheCommitUndoesAllOfIt) {
    for (const RegistryKey root : {kHkeyCurrentUser, kHkeyLocalMachine}) {
        EXPECT_EQ(write(root, "a", "v", "old"), 0u);
        EXPECT_EQ(inChild([&] {
                      registryTransactions.Begin();
                      EXPECT_EQ(write(root, "a", "v", "new"), 0u);
                      EXPECT_EQ(write(root, "a", "w", std::string(500000, 'x')), 0u);
                      limitFiles(400000);
                      EXPECT_EQ(number(registryTransactions.Commit()), kErrorDiskFull);
                      EXPECT_EQ(read(root, "a", "v"), "old");
                      return testing::Test::HasFailure() ? 1 : 0;
                  }),
                  0);
        EXPECT_EQ(read(root, "a", "v"), "old");
    }
}

}  // namespace
}  // namespace orvane::platform

#include "platform/advapi32.h"
#include "platform/kernel32.h"
#include "platform/linux/command_line.h"
#include "platform/linux/text_files.h"
#include "platform/winmm.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <ctime>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace orvane::platform {
namespace {

using namespace std::string_literals;

TEST(LinuxHostFacts, TheFullUserNameIsComputerAndUser) {
    EXPECT_EQ(secur32.GetUserNameExA(),
              kernel32.GetComputerNameA() + "\\" + advapi32.GetUserNameA());
    EXPECT_FALSE(kernel32.GetComputerNameA().empty());
    EXPECT_EQ(kernel32.GetComputerNameA().find('.'), std::string::npos);
}

TEST(LinuxHostFacts, TheSystemIsOfTheNtLine) {
    SystemVersion version;
    EXPECT_TRUE(kernel32.GetVersionExA(version));
    EXPECT_EQ(version.platformId, 2u);
    EXPECT_GE(version.major, 3u);
    EXPECT_EQ(version.servicePack, "");
}

TEST(LinuxHostFacts, MemoryFiguresAgree) {
    MemoryStatus status;
    ASSERT_TRUE(kernel32.GlobalMemoryStatusEx(status));
    EXPECT_GT(status.totalPhysical, 1u << 20);
    EXPECT_LE(status.availablePhysical, status.totalPhysical);
    EXPECT_LE(status.availablePageFile, status.totalPageFile);
    EXPECT_LT(status.availableVirtual, status.totalVirtual);
    EXPECT_LE(status.memoryLoad, 100u);
}

TEST(LinuxHostFacts, ThereIsNoMultimediaLibrary) {
    EXPECT_EQ(winmm.mciGetErrorStringA(257), "");
    EXPECT_EQ(lastError(), kErrorModuleNotFound);
}

TEST(LinuxHostFacts, ADebugTextThatNobodyReadsHarmsNobody) {
    const pid_t child = ::fork();
    if (child == 0) {
        int ends[2] = {-1, -1};
        const bool made = ::pipe(ends) == 0 && ::dup2(ends[1], STDERR_FILENO) == STDERR_FILENO;
        ::close(ends[0]);
        ::setenv("ORVANE_DEBUG", "1", 1);
        kernel32.OutputDebugStringA("text");
        ::_exit(made ? 0 : 1);
    }
    int status = -1;
    ::waitpid(child, &status, 0);
    EXPECT_EQ(status, 0);
}

TEST(TextFiles, NumbersAreFoundByName) {
    constexpr auto kText = "MemTotal:  2048 kB\nMemFree:\t7 kB\nBig: 99999999999999999999\n";
    EXPECT_EQ(namedNumber(kText, "MemTotal"), 2048u);
    EXPECT_EQ(namedNumber(kText, "MemFree"), 7u);
    EXPECT_EQ(namedNumber(kText, "Free"), 0u);
    EXPECT_EQ(namedNumber(kText, "Big"), 0u);
    EXPECT_EQ(namedNumber("", "MemTotal"), 0u);
}

TEST(TextFiles, AssignmentsLoseTheirQuotes) {
    constexpr auto kText = "A=plain\nB=\"two \\\"words\\\"\"\nC='lit\\eral'\nD=\nE=\"\nLAST=x";
    EXPECT_EQ(assignedText(kText, "A"), "plain");
    EXPECT_EQ(assignedText(kText, "B"), "two \"words\"");
    EXPECT_EQ(assignedText(kText, "C"), "lit\\eral");
    EXPECT_EQ(assignedText(kText, "D"), "");
    EXPECT_EQ(assignedText(kText, "E"), "\"");
    EXPECT_EQ(assignedText(kText, "LAST"), "x");
    EXPECT_EQ(assignedText(kText, "AST"), "");
}

TEST(TextFiles, TheSystemHasANameInAnyCase) {
    EXPECT_EQ(systemTitle("PRETTY_NAME=\"One 1\"\n", "PRETTY_NAME=Two\n", "Linux"), "One 1");
    EXPECT_EQ(systemTitle("NAME=One\n", "PRETTY_NAME=Two\n", "Linux"), "Two");
    EXPECT_EQ(systemTitle("", "PRETTY_NAME=\n", "Linux"), "Linux");
}

TEST(CommandLine, WordsAreJoinedByOneBlank) {
    EXPECT_EQ(commandLineText("/bin/prog\0a\0b=c\0"s), u"/bin/prog a b=c");
    EXPECT_EQ(commandLineText("prog"s), u"prog");
    EXPECT_EQ(commandLineText(""s), u"");
}

TEST(CommandLine, WordsThatReadingWouldChangeAreQuoted) {
    EXPECT_EQ(commandLineText("p\0a b\0"s), u"p \"a b\"");
    EXPECT_EQ(commandLineText("p\0\0x\0"s), u"p \"\" x");
    EXPECT_EQ(commandLineText("p\0\"q\0"s), u"p \"\"q\"");
    EXPECT_EQ(commandLineText("p\0\tq\0r\n\0s\tt\0"s), u"p \"\tq\" \"r\n\" s\tt");
    EXPECT_EQ(commandLineText("p\0a\"b\0"s), u"p a\"b");
}

TEST(CommandLine, Utf8IsDecodedAndOtherBytesHaveTheirUnit) {
    EXPECT_EQ(commandLineText("\u0416\U0001F600\0"s), u"\u0416\U0001F600");
    EXPECT_EQ(commandLineText("\xCF\xF0\xE8\0"s), u"\u041F\u0440\u0438");
}

TEST(CommandLine, IsKept) {
    const char16_t* line = kernel32.GetCommandLineW();
    ASSERT_NE(line, nullptr);
    EXPECT_EQ(kernel32.GetCommandLineW(), line);
    EXPECT_NE(std::u16string(line).find(u"test_platform_linux"), std::u16string::npos);
}

TEST(Messages, EndInALineEnd) {
    EXPECT_EQ(kernel32.FormatMessageA(ModuleHandle::none, 2),
              "The system cannot find the file specified.\r\n");
    EXPECT_EQ(kernel32.FormatMessageA(ModuleHandle::none, 0),
              "The operation completed successfully.\r\n");
    EXPECT_EQ(kernel32.FormatMessageA(ModuleHandle::none, 0x80070005), "Access is denied.\r\n");
}

TEST(Messages, AnUnknownNumberHasNone) {
    EXPECT_EQ(kernel32.FormatMessageA(ModuleHandle::none, 54321), "");
    EXPECT_EQ(lastError(), 317u);
    EXPECT_EQ(kernel32.FormatMessageA(ModuleHandle::none, 12029), "");
    EXPECT_EQ(kernel32.FormatMessageA(ModuleHandle{1234}, 2), "");
}

TEST(Messages, TheNetworkLibraryHasItsOwn) {
    const ModuleHandle module = kernel32.GetModuleHandleA("WinInet.DLL");
    ASSERT_NE(module, ModuleHandle::none);
    EXPECT_EQ(kernel32.GetModuleHandleA("wininet"), module);
    EXPECT_EQ(kernel32.FormatMessageA(module, 12029),
              "A connection with the server could not be established\r\n");
    EXPECT_EQ(kernel32.FormatMessageA(module, 2), "");
}

TEST(Modules, AreFoundByFileName) {
    EXPECT_EQ(kernel32.GetModuleHandleA("no such module"), ModuleHandle::none);
    EXPECT_EQ(lastError(), kErrorModuleNotFound);
    EXPECT_EQ(kernel32.GetModuleHandleA(""), ModuleHandle::none);
    const ModuleHandle library = kernel32.GetModuleHandleA("libc.so.6");
    ASSERT_NE(library, ModuleHandle::none);
    EXPECT_EQ(kernel32.GetModuleHandleA("libc.so.6"), library);
    const std::string path = kernel32.GetModuleFileNameA(library);
    EXPECT_EQ(path.substr(path.size() - 10), "/libc.so.6");
    EXPECT_EQ(kernel32.GetModuleHandleA(path), library);
    EXPECT_EQ(kernel32.GetModuleFileNameA(ModuleHandle{77}), "");
}

TEST(Modules, TheExecutableIsTheOneWithoutAHandle) {
    const std::string path = kernel32.GetModuleFileNameA(ModuleHandle::none);
    EXPECT_EQ(path.substr(path.rfind('/') + 1), "test_platform_linux");
    EXPECT_NE(kernel32.GetModuleHandleA("test_platform_linux"), ModuleHandle::none);
}

TEST(DebugOutput, IsALineWhenAskedFor) {
    ::unsetenv("ORVANE_DEBUG");
    testing::internal::CaptureStderr();
    kernel32.OutputDebugStringA("not seen");
    ::setenv("ORVANE_DEBUG", "1", 1);
    kernel32.OutputDebugStringA("\xC4\xE0");
    kernel32.OutputDebugStringA("line\n");
    ::unsetenv("ORVANE_DEBUG");
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "\u0414\u0430\nline\n");
}

TEST(LinuxClock, TheHighResolutionCounterRunsInNanoseconds) {
    std::int64_t frequency = 0;
    ASSERT_TRUE(kernel32.QueryPerformanceFrequency(frequency));
    EXPECT_EQ(frequency, 1'000'000'000);
    std::int64_t first = 0;
    std::int64_t second = 0;
    timespec between{};
    ASSERT_TRUE(kernel32.QueryPerformanceCounter(first));
    ::clock_gettime(CLOCK_MONOTONIC, &between);
    ASSERT_TRUE(kernel32.QueryPerformanceCounter(second));
    const std::int64_t expected = between.tv_sec * frequency + between.tv_nsec;
    EXPECT_LE(first, expected);
    EXPECT_GE(second, expected);
}

TEST(LinuxClock, CountsFrom1601) {
    constexpr std::uint64_t kStartOf2020 = 132'223'104'000'000'000;
    EXPECT_GT(kernel32.GetSystemTimeAsFileTime(), kStartOf2020);
    const std::uint32_t tick = kernel32.GetTickCount();
    EXPECT_LT(kernel32.GetTickCount() - tick, 60'000u);
}

int endedValues = 0;  // by one thread at a time: the tests join before they look

TEST(LinuxThreadSlots, EachThreadsValueGoesToTheCallback) {
    endedValues = 0;
    const std::uint32_t slot =
        kernel32.TlsAlloc([](void* value) { endedValues += *static_cast<int*>(value); });
    ASSERT_NE(slot, 0xFFFFFFFF);
    int value = 5;
    EXPECT_EQ(kernel32.TlsGetValue(slot), nullptr);
    std::thread([slot, &value] {
        EXPECT_TRUE(kernel32.TlsSetValue(slot, &value));
        EXPECT_EQ(kernel32.TlsGetValue(slot), &value);
    }).join();
    EXPECT_EQ(endedValues, 5);
    EXPECT_TRUE(kernel32.TlsFree(slot));
    EXPECT_FALSE(kernel32.TlsFree(slot));
    EXPECT_EQ(lastError(), kErrorInvalidParameter);
    EXPECT_FALSE(kernel32.TlsSetValue(slot, &value));
}

TEST(LinuxThreadSlots, AFreedSlotCallsNobody) {
    endedValues = 0;
    const std::uint32_t slot = kernel32.TlsAlloc([](void*) { endedValues = -1; });
    int value = 5;
    std::thread([slot, &value] {
        EXPECT_TRUE(kernel32.TlsSetValue(slot, &value));
        EXPECT_TRUE(kernel32.TlsFree(slot));
    }).join();
    EXPECT_EQ(endedValues, 0);
}

}  // namespace
}  // namespace orvane::platform

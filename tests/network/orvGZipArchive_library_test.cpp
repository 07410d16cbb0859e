#include "network/orvGZipArchive.h"

#include "gzip_member.h"
#include "platform/kernel32.h"
#include "platform/zlib.h"
#include "support/file_names.h"
#include "support/modules.h"
#include "support/raised_error.h"
#include "support/recorder.h"
#include "support/torture.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

/// How zlib is loaded, asked for and called, and what its absence does.
namespace orvane {
namespace {

using namespace std::literals;
using platform::kernel32;
using platform::ModuleHandle;
using test::Member;
using test::raisedBy;
using test::Recorder;
using test::ScopedTarget;
using testing::ElementsAre;
using enum gzUncompressErrors;

constexpr const char* kLibrary = "ZLibStdCall.DLL";

std::vector<platform::OperationBase*> loading() {
    return {&kernel32.LoadLibraryA, &kernel32.FreeLibrary, &kernel32.GetModuleHandleExA,
            &kernel32.GetModuleFileNameA, &kernel32.GetLongPathNameA};
}

/// Libraries that load from some names only, and what was loaded and freed.
class FakeLibraries {
public:
    explicit FakeLibraries(std::vector<std::string> there)
        : load_(kernel32.LoadLibraryA,
                [this, there](const std::string& name) {
                    asked.push_back(name);
                    if (std::ranges::find(there, name) == there.end()) {
                        platform::setLastError(platform::kErrorModuleNotFound);
                        return ModuleHandle::none;
                    }
                    return static_cast<ModuleHandle>(70 + asked.size());
                }),
          free_(kernel32.FreeLibrary, [this](ModuleHandle library) {
              freed.push_back(static_cast<int>(library));
              return true;
          }) {}

    std::vector<std::string> asked;
    std::vector<int> freed;

private:
    ScopedTarget<ModuleHandle(const std::string&)> load_;
    ScopedTarget<bool(ModuleHandle)> free_;
};

/// The library's name in the folder of the module that holds the class.
std::string besideUs() {
    static const char here = 0;
    const WString own = nqGetModulePrettyFileName(kernel32.GetModuleHandleExA(&here));
    return toAnsi(nqBuildFileName(nqGetFilePath(own), fromAnsi(kLibrary)));
}

TEST(GZipLibrary, BareNameIsLoadedAndFreedAtTheEnd) {
    const Recorder recorder(loading());
    make<orvGZipArchive>();
    EXPECT_TRUE(recorder.saw({"LoadLibraryA(\"ZLibStdCall.DLL\") -> *", "FreeLibrary(*) -> true"}));
    EXPECT_EQ(recorder.calls()[1].arguments[0], recorder.calls()[0].result);
    EXPECT_EQ(recorder.leftOpen(), std::vector<std::string>());
}

TEST(GZipLibrary, OwnFolderIsTheSecondPlace) {
    const std::string beside = besideUs();
    FakeLibraries libraries({beside});
    {
        const auto archive = make<orvGZipArchive>();
        EXPECT_THAT(libraries.asked, ElementsAre(kLibrary, beside));
        EXPECT_TRUE(libraries.freed.empty());
    }
    EXPECT_THAT(libraries.freed, ElementsAre(72));
}

TEST(GZipLibrary, NothingIsFreedWhenNeitherPlaceHasIt) {
    FakeLibraries libraries({});
    make<orvGZipArchive>();
    EXPECT_THAT(libraries.asked, ElementsAre(kLibrary, besideUs()));
    EXPECT_TRUE(libraries.freed.empty());
}

TEST(GZipLibrary, SecondPlaceIsFoundByTheModulesOwnName) {
    const ScopedTarget load(kernel32.LoadLibraryA,
                            [](const std::string&) { return ModuleHandle::none; });
    const Recorder recorder(loading());
    make<orvGZipArchive>();
    EXPECT_THAT(recorder.names(),
                ElementsAre("LoadLibraryA", "GetModuleHandleExA", "GetModuleFileNameA",
                            "GetLongPathNameA", "LoadLibraryA"));
}

TEST(GZipLibrary, OsOfANewObjectReads0WhenTheFirstLoadWorked) {
    FakeLibraries libraries({kLibrary});
    const auto archive = make<orvGZipArchive>();
    EXPECT_EQ(archive->OS(), gzArchiveOS::gzosFATFilesystem);
    archive->Clear();
    EXPECT_EQ(archive->OS(), gzArchiveOS::gzosUnknown);
}

TEST(GZipLibrary, OsOfANewObjectReads255WhenTheFirstLoadFailed) {
    for (const std::vector<std::string>& there : {std::vector{besideUs()}, {}}) {
        FakeLibraries libraries(there);
        EXPECT_EQ(make<orvGZipArchive>()->OS(), gzArchiveOS::gzosUnknown);
    }
}

TEST(GZipLibrary, OsReads255AfterTheFirstUncompress) {
    FakeLibraries libraries({kLibrary});
    const auto archive = make<orvGZipArchive>();
    EXPECT_EQ(archive->UncompressData(u"no gzip"), gzueNotGZip);
    EXPECT_EQ(archive->OS(), gzArchiveOS::gzosUnknown);
}

TEST(GZipLibrary, RealLibraryIsAvailable) {
    EXPECT_TRUE(make<orvGZipArchive>()->IsLibraryAvailable());
}

TEST(GZipLibrary, AvailabilityIsAskedByTheVersionWhichIsIgnored) {
    const auto archive = make<orvGZipArchive>();
    int asked = 0;
    const ScopedTarget version(platform::zlib.zlibVersion, [&](std::string& text) {
        ++asked;
        text.clear();
        return true;
    });
    EXPECT_TRUE(archive->IsLibraryAvailable());
    EXPECT_EQ(asked, 1);
}

TEST(GZipLibrary, MissingLibraryIsNotAvailableAndRaisesNothing) {
    const auto archive = make<orvGZipArchive>();
    for (const std::uint32_t error :
         {platform::kErrorModuleNotFound, platform::kErrorProcedureNotFound}) {
        const ScopedTarget version(platform::zlib.zlibVersion, [error](std::string&) {
            platform::setLastError(error);
            return false;
        });
        EXPECT_FALSE(archive->IsLibraryAvailable());
    }
    EXPECT_TRUE(archive->IsLibraryAvailable());
}

TEST(GZipLibrary, WithoutItTheDataIsNotLookedAt) {
    const auto archive = make<orvGZipArchive>();
    ASSERT_EQ(archive->UncompressData(Member("data").text()), gzueSuccess);
    const ScopedTarget version(platform::zlib.zlibVersion, [](std::string&) { return false; });
    const ScopedTarget uncompress(
        platform::zlib.uncompress,
        [](std::span<std::uint8_t>, std::uint32_t&, std::span<const std::uint8_t>) {
            ADD_FAILURE() << "called";
            return 0;
        });
    // "\x1F\x8B" alone would raise 5.
    for (const WString& data : {Member("data").text(), fromAnsi("\x1F\x8B"sv), WString()})
        EXPECT_EQ(archive->UncompressData(data), gzueLibraryNotAvailable);
    EXPECT_EQ(archive->UncompressedData().size(), 0U);
    EXPECT_EQ(archive->ID1(), 0);
}

TEST(GZipLibrary, LibraryWithoutTheFunctionRaisesItsError) {
    const auto archive = make<orvGZipArchive>();
    const ScopedTarget uncompress(
        platform::zlib.uncompress,
        [](std::span<std::uint8_t>, std::uint32_t&, std::span<const std::uint8_t>) {
            platform::setLastError(platform::kErrorProcedureNotFound);
            return platform::kZlibNotBound;
        });
    EXPECT_EQ(raisedBy([&] { archive->UncompressData(Member("data").text()); }),
              error::kEntryPointNotFound);
    EXPECT_EQ(archive->ID1(), 0);
    EXPECT_EQ(archive->OS(), gzArchiveOS::gzosUnknown);
}

TEST(GZipLibrary, BodyGoesToItBehindAZlibHeaderWithRoomForTheLength) {
    const auto archive = make<orvGZipArchive>();
    const Member member("0123456789");
    const auto real = platform::zlib.uncompress;
    std::string given;
    std::size_t room = 0;
    const ScopedTarget uncompress(
        platform::zlib.uncompress, [&](std::span<std::uint8_t> destination, std::uint32_t& length,
                                       std::span<const std::uint8_t> source) {
            given.assign(source.begin(), source.end());
            room = destination.size();
            EXPECT_EQ(length, room);
            EXPECT_TRUE(std::ranges::all_of(destination, [](auto byte) { return byte == 0; }));
            return real(destination, length, source);
        });
    EXPECT_EQ(archive->UncompressData(member.text()), gzueSuccess);
    EXPECT_EQ(given, "\x78\xDA" + member.body);
    EXPECT_EQ(room, 10U);
}

TEST(GZipLibrary, ItsCodeIsIgnored) {
    const auto archive = make<orvGZipArchive>();
    for (const int code : {0, 1, 2, -1, -2, -3, -4, -5, -6}) {
        const ScopedTarget uncompress(platform::zlib.uncompress,
                                      [code](std::span<std::uint8_t> destination, std::uint32_t&,
                                             std::span<const std::uint8_t>) {
                                          std::ranges::copy("data"sv, destination.begin());
                                          return code;
                                      });
        EXPECT_EQ(archive->UncompressData(Member("data").text()), gzueSuccess) << code;
        EXPECT_EQ(archive->UncompressedData(), u"data");
        EXPECT_EQ(archive->DataLen(), 4);
    }
}

TEST(GZipLibrary, RoomIsNoMoreThanTheBodyCanFill) {
    const auto archive = make<orvGZipArchive>();
    // As many bytes as so short a body can make: deflate does not get further.
    const std::string zeros(1000000, '\0');
    Member member(zeros, 9);
    EXPECT_EQ(archive->UncompressData(member.text()), gzueSuccess);
    EXPECT_EQ(archive->UncompressedData().size(), zeros.size());
    std::size_t room = 0;
    const auto real = platform::zlib.uncompress;
    const ScopedTarget uncompress(platform::zlib.uncompress,
                                  [&](std::span<std::uint8_t> destination, std::uint32_t& length,
                                      std::span<const std::uint8_t> source) {
                                      room = destination.size();
                                      return real(destination, length, source);
                                  });
    member.length = 0x7FFFFFFF;
    EXPECT_EQ(archive->UncompressData(member.text()), gzueCRCMismatch);
    EXPECT_GE(room, zeros.size());
    EXPECT_LE(room, (member.body.size() + 1) * 1032);
}

TEST(GZipLibrary, ShortMemoryRaises7AndLeavesTheObjectUsable) {
    const auto archive = make<orvGZipArchive>();
    const std::string text(5 << 20, 'x');
    const Member member(text);
    {
        const ScopedTarget pages(kernel32.VirtualAlloc,
                                 [](std::size_t) -> void* { return nullptr; });
        EXPECT_EQ(raisedBy([&] { archive->UncompressData(member.text()); }), error::kOutOfMemory);
        EXPECT_EQ(archive->ID1(), 0);
        EXPECT_EQ(archive->DataLen(), 0);
    }
    EXPECT_EQ(archive->UncompressData(member.text()), gzueSuccess);
    EXPECT_EQ(archive->UncompressedData().size(), text.size());
}

TEST(GZipLibrary, NoFailureOfThePlatformLeavesALibraryLoadedOrEndsInAnythingElse) {
    const WString data = Member(std::string(5 << 20, 'x')).text();
    const std::size_t failures = test::torture(
        [&] {
            try {
                const auto archive = make<orvGZipArchive>();
                return static_cast<int>(archive->UncompressData(data));
            } catch (const RuntimeError& error) {
                return -error.number;
            }
        },
        [](int outcome, const test::TortureRun& run) {
            // Without the first load everything goes on as before.
            int expected = 0;
            if (run.failed == "zlibVersion") expected = 8;
            if (run.failed == "uncompress") expected = -error::kFileNotFound;
            if (run.failed == "VirtualAlloc") expected = -error::kOutOfMemory;
            EXPECT_EQ(outcome, expected) << run.failed;
        });
    EXPECT_GE(failures, 4U);
}

TEST(GZipLibrary, ModuleThatIsNotToldIsNotTakenForTheHosts) {
    FakeLibraries libraries({besideUs()});
    {
        const ScopedTarget module(kernel32.GetModuleHandleExA, [](const void*) {
            platform::setLastError(platform::kErrorModuleNotFound);
            return ModuleHandle::none;
        });
        EXPECT_EQ(raisedBy([] { make<orvGZipArchive>(); }), error::kFileNotFound);
    }
    // The second place would be the host's folder.
    EXPECT_THAT(libraries.asked, ElementsAre(kLibrary));
    EXPECT_EQ(make<orvGZipArchive>()->OS(), gzArchiveOS::gzosUnknown);
}

TEST(GZipLibrary, EveryFailureOnTheWayToTheSecondPlaceIsToldOrPassedOver) {
    const WString data = Member("data").text();
    const std::string beside = besideUs();
    std::vector<platform::OperationBase*> operations = loading();
    operations.insert(operations.end(), {&platform::zlib.zlibVersion, &platform::zlib.uncompress});
    std::vector<std::string> failed;
    // The first load fails in all runs; 71 and later are the handles of the second.
    std::vector<std::string> asked;
    int loaded = 0;
    const ScopedTarget load(kernel32.LoadLibraryA, [&](const std::string& name) {
        asked.push_back(name);
        if (name == kLibrary) {
            platform::setLastError(platform::kErrorModuleNotFound);
            return ModuleHandle::none;
        }
        return static_cast<ModuleHandle>(70 + ++loaded);
    });
    const ScopedTarget free(kernel32.FreeLibrary, [&](ModuleHandle) {
        --loaded;
        return true;
    });
    test::torture(
        [&] {
            asked.clear();
            try {
                const auto archive = make<orvGZipArchive>();
                EXPECT_EQ(archive->OS(), gzArchiveOS::gzosUnknown);
                return static_cast<int>(archive->UncompressData(data));
            } catch (const RuntimeError& error) {
                return -error.number;
            }
        },
        [&](int outcome, const test::TortureRun& run) {
            failed.push_back(run.failed);
            int expected = 0;
            if (run.failed == "GetModuleHandleExA" || run.failed == "GetModuleFileNameA") {
                expected = -error::kFileNotFound;
            }
            if (run.failed == "zlibVersion") expected = 8;
            if (run.failed == "uncompress") expected = -error::kFileNotFound;
            EXPECT_EQ(outcome, expected) << run.failed;
            EXPECT_EQ(loaded, 0) << run.failed;
            for (const std::string& name : asked)
                EXPECT_TRUE(name == kLibrary || name == beside) << name;
        },
        {.operations = operations, .spared = {}});
    EXPECT_THAT(failed,
                ElementsAre("LoadLibraryA", "GetModuleHandleExA", "GetModuleFileNameA",
                            "GetLongPathNameA", "LoadLibraryA", "zlibVersion", "uncompress", ""));
}

}  // namespace
}  // namespace orvane

// Processes save and load one setting and change the keys beside it, for as many seconds as the
// argument says. The setting changes its size with every save: nobody may load one that is torn, or
// what the version before has stored, or miss a key that is there all the time.

#include "settings/orvOrvaneSettings.h"
#include "settings/orvRegistry.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace orvane {
namespace {

using enum RegistryType_Const;

constexpr int kSavers = 3;
constexpr int kLoaders = 3;
constexpr const char16_t* kTitle = u"Stress";
constexpr const char16_t* kKey = u"Software\\Tarn Hollow\\Orvane\\Stress";

struct Shared {
    std::atomic<std::uint32_t> saved{0};
    std::atomic<std::uint32_t> loaded{0};
    std::atomic<std::uint32_t> listed{0};
    std::atomic<std::uint32_t> failed{0};
    std::atomic<std::uint32_t> torn{0};
    std::atomic<std::uint32_t> former{0};
    std::atomic<std::uint32_t> missed{0};
    std::atomic<bool> end{false};
};

Shared* shared = nullptr;

constexpr std::uint8_t kFormer = 0xFF;

std::size_t sizeOf(std::uint8_t byte) {
    constexpr std::array<std::size_t, 4> kSizes{3, 9, 50, 200};
    return byte == kFormer ? 77 : kSizes[byte % kSizes.size()];
}

Variant setting(std::uint8_t byte) {
    Array<std::uint8_t> bytes(0, static_cast<std::int32_t>(sizeOf(byte)) - 1);
    std::ranges::fill(bytes.elements(), byte);
    return Variant(std::move(bytes));
}

bool save(orvOrvaneSettings& settings, std::uint8_t byte, std::int32_t major) {
    return settings.SaveSetting(u"sub", u"v", rtBinary, setting(byte), kTitle, major, 0, true);
}

void saveMany(orvOrvaneSettings& settings) {
    for (std::uint8_t byte = 0; !shared->end; byte = byte == kFormer - 1 ? 0 : byte + 1) {
        ++(save(settings, byte, 2) ? shared->saved : shared->failed);
    }
}

void loadMany(orvOrvaneSettings& settings) {
    while (!shared->end) {
        bool success = false;
        const Variant loaded =
            settings.LoadSetting(u"sub", u"v", rtBinary, kTitle, 2, 0, {}, true, success);
        const auto* array = loaded.asArray<std::uint8_t>();
        if (!success || array == nullptr) {
            ++shared->failed;
            continue;
        }
        const auto bytes = array->elements();
        ++shared->loaded;
        if (bytes[0] == kFormer) ++shared->former;
        const bool whole =
            bytes.size() == sizeOf(bytes[0]) &&
            std::ranges::all_of(bytes, [&](std::uint8_t byte) { return byte == bytes[0]; });
        if (!whole) ++shared->torn;
    }
}

/// Deletes a key with a short name and makes one with a long name, in turn.
void changeKeys() {
    const auto registry = make<orvRegistry>();
    const std::u16string shortName = std::u16string(kKey) + u"\\a";
    for (std::size_t i = 0; !shared->end; ++i) {
        const std::u16string longName =
            std::u16string(kKey) + u"\\" + std::u16string(20 + i % 200, u'b');
        bool existed = false;
        if (!registry->CreateKey(RegistryRoot_Const::currentUser, shortName, existed) ||
            !registry->DeleteKey(RegistryRoot_Const::currentUser, shortName) ||
            !registry->CreateKey(RegistryRoot_Const::currentUser, longName, existed) ||
            !registry->DeleteKey(RegistryRoot_Const::currentUser, longName)) {
            ++shared->failed;
        }
    }
}

void listKeys() {
    const auto registry = make<orvRegistry>();
    while (!shared->end) {
        const auto names = registry->GetSubKeysNames(RegistryRoot_Const::currentUser, kKey);
        ++shared->listed;
        int found = 0;
        for (std::int32_t i = 1; names && i <= names->items().count(); ++i) {
            const Variant name = names->items().item(i);
            if (name.as<WString>()->units().starts_with(u"Version")) ++found;
        }
        if (found != 2) ++shared->missed;
    }
}

int run(int seconds) {
    std::string folder = "/tmp/orvane-stress-XXXXXX";
    if (::mkdtemp(folder.data()) == nullptr) return 1;
    ::setenv("ORVANE_REGISTRY_USER", (folder + "/user").c_str(), 1);
    ::setenv("ORVANE_REGISTRY_MACHINE", (folder + "/machine").c_str(), 1);
    void* memory =
        ::mmap(nullptr, sizeof(Shared), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
    if (memory == MAP_FAILED) return 1;
    shared = new (memory) Shared;
    const auto settings = make<orvOrvaneSettings>();
    if (!save(*settings, kFormer, 1) || !save(*settings, 0, 2)) return 1;

    std::array<pid_t, kSavers + kLoaders + 2> children{};
    for (std::size_t i = 0; i < children.size(); ++i) {
        children[i] = ::fork();
        if (children[i] != 0) continue;
        ::prctl(PR_SET_PDEATHSIG, SIGKILL);
        if (i < kSavers) {
            saveMany(*settings);
        } else if (i < kSavers + kLoaders) {
            loadMany(*settings);
        } else if (i == kSavers + kLoaders) {
            changeKeys();
        } else {
            listKeys();
        }
        ::_exit(0);
    }
    ::sleep(static_cast<unsigned>(seconds));
    shared->end = true;
    bool ended = true;
    for (const pid_t child : children) {
        int status = -1;
        ended = ::waitpid(child, &status, 0) == child && status == 0 && ended;
    }
    std::printf("%u saved, %u loaded, %u lists; %u failed, %u torn, %u of the version before, %u "
                "lists wrong%s\n",
                shared->saved.load(), shared->loaded.load(), shared->listed.load(),
                shared->failed.load(), shared->torn.load(), shared->former.load(),
                shared->missed.load(), ended ? "" : "; a process ended badly");
    std::filesystem::remove_all(folder);
    const bool worked = shared->saved > 100 && shared->loaded > 100 && shared->listed > 100;
    const bool right =
        shared->failed == 0 && shared->torn == 0 && shared->former == 0 && shared->missed == 0;
    return worked && right && ended ? 0 : 1;
}

}  // namespace
}  // namespace orvane

int main(int count, char** arguments) {
    return orvane::run(count > 1 ? std::atoi(arguments[1]) : 10);
}

#pragma once

#include "platform/advapi32.h"
#include "platform/shlwapi.h"
#include "support/registry_store.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <functional>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace orvane::platform {

namespace fs = std::filesystem;

inline std::uint32_t number(ResultCode code) {
    return static_cast<std::uint32_t>(code);
}

inline std::vector<std::uint8_t> bytes(std::string_view text) {
    return {text.begin(), text.end()};
}

inline std::uint32_t write(RegistryKey root, const std::string& path, const std::string& name,
                           std::string_view data) {
    RegistryKey key{};
    KeyDisposition done{};
    ResultCode code = advapi32.RegCreateKeyExA(root, path, 0, kKeySetValue, key, done);
    if (code != ResultCode::success) return number(code);
    code = advapi32.RegSetValueExA(key, name, kRegBinary, bytes(data));
    advapi32.RegCloseKey(key);
    return number(code);
}

/// The data of a value, or the number of the failure in parentheses.
inline std::string read(RegistryKey root, const std::string& path, const std::string& name) {
    RegistryKey key{};
    ResultCode code = advapi32.RegOpenKeyExA(root, path, 0, kKeyQueryValue, key);
    std::vector<std::uint8_t> data(65536);
    auto size = static_cast<std::uint32_t>(data.size());
    std::uint32_t type = 0;
    if (code == ResultCode::success) {
        code = advapi32.RegQueryValueExA(key, name, type, data.data(), size);
        advapi32.RegCloseKey(key);
    }
    if (code != ResultCode::success) return "(" + std::to_string(number(code)) + ")";
    return {data.begin(), data.begin() + static_cast<int>(size)};
}

inline std::vector<std::string> subKeys(RegistryKey root, const std::string& path) {
    RegistryKey key{};
    std::vector<std::string> names;
    if (advapi32.RegOpenKeyExA(root, path, 0, kKeyEnumerateSubKeys, key) != ResultCode::success) {
        return {"(no key)"};
    }
    std::array<char, 300> name{};
    while (advapi32.RegEnumKeyA(key, static_cast<std::uint32_t>(names.size()), name) ==
           ResultCode::success) {
        names.emplace_back(name.data());
    }
    advapi32.RegCloseKey(key);
    return names;
}

inline std::vector<std::string> values(RegistryKey root, const std::string& path) {
    RegistryKey key{};
    std::vector<std::string> names;
    if (advapi32.RegOpenKeyExA(root, path, 0, kKeyQueryValue, key) != ResultCode::success) {
        return {"(no key)"};
    }
    std::array<char, 300> name{};
    auto size = static_cast<std::uint32_t>(name.size());
    while (advapi32.RegEnumValueA(key, static_cast<std::uint32_t>(names.size()), name.data(),
                                  size) == ResultCode::success) {
        names.emplace_back(name.data());
        size = static_cast<std::uint32_t>(name.size());
    }
    advapi32.RegCloseKey(key);
    return names;
}

/// Runs a body in a child process and gives its exit status; it ends without the exit handlers of
/// the parent.
inline int inChild(const std::function<int()>& body) {
    const pid_t child = ::fork();
    if (child == 0) ::_exit(body());
    int status = 0;
    EXPECT_EQ(::waitpid(child, &status, 0), child);
    return WIFEXITED(status) ? WEXITSTATUS(status) : 1000 + WTERMSIG(status);
}

/// No file of this process may get larger than `size` bytes from here on.
inline void limitFiles(rlim_t size) {
    ::signal(SIGXFSZ, SIG_IGN);
    const rlimit limit{size, size};
    EXPECT_EQ(::setrlimit(RLIMIT_FSIZE, &limit), 0);
}

inline constexpr uid_t kNobody = 65534;

/// A registry that nobody else looks at, in a folder that every user can look into.
struct RegistryStoreLinux : test::RegistryTest {
    void SetUp() override {
        fs::permissions(fs::path(store_.userFolder()).parent_path(), fs::perms(0755));
    }

    static mode_t modeOf(const std::string& path) {
        struct stat facts {};
        EXPECT_EQ(::stat(path.c_str(), &facts), 0) << path;
        return facts.st_mode & 07777;
    }
    static std::vector<std::string> filesIn(const std::string& folder) {
        std::vector<std::string> names;
        for (const auto& entry : fs::directory_iterator(folder))
            names.push_back(entry.path().filename());
        std::ranges::sort(names);
        return names;
    }
    /// The name that damage gave the user's database.
    std::string setAside() const {
        for (const std::string& name : filesIn(store_.userFolder())) {
            if (name.starts_with("registry.db.damaged-") && !name.ends_with("-wal") &&
                !name.ends_with("-shm")) {
                return store_.userFolder() + "/" + name;
            }
        }
        return {};
    }
    static std::string contentOf(const std::string& file) {
        std::ifstream stream(file, std::ios::binary);
        return {std::istreambuf_iterator<char>(stream), {}};
    }
    static void overwrite(const std::string& file, std::streamoff place, std::string_view text) {
        std::fstream stream(file, std::ios::in | std::ios::out | std::ios::binary);
        stream.seekp(place);
        stream << text;
        EXPECT_TRUE(stream.good());
    }
};

}  // namespace orvane::platform

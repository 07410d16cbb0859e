#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace orvane::test {

/// A new empty folder in the system's temporary folder, removed with all it holds at its end.
class TempDir {
public:
    TempDir();
    ~TempDir();
    TempDir(const TempDir&) = delete;
    TempDir& operator=(const TempDir&) = delete;

    const std::filesystem::path& path() const { return path_; }
    /// The folder's name without a separator at its end.
    std::string name() const { return path_.string(); }
    /// The full name of an entry, which need not be there; as the platform's narrow functions take
    /// names.
    std::string file(std::string_view entry) const;
    /// Writes a file and gives its full name.
    std::string write(std::string_view entry, const std::vector<std::uint8_t>& bytes) const;
    std::string write(std::string_view entry, std::string_view text) const;
    /// A file's bytes; the test fails when it can't be read.
    std::vector<std::uint8_t> read(std::string_view entry) const;
    bool has(std::string_view entry) const;
    /// The names of the folder's entries, sorted.
    std::vector<std::string> entries() const;

private:
    std::filesystem::path path_;
};

/// A test with a temporary folder of its own.
class TempDirTest : public testing::Test {
protected:
    TempDir dir_;
};

}  // namespace orvane::test

#include "support/temp_dir.h"

#include <algorithm>
#include <fstream>
#include <iterator>
#include <random>
#include <stdexcept>

namespace orvane::test {

namespace fs = std::filesystem;

TempDir::TempDir() {
    std::random_device random;
    for (int attempt = 0; attempt < 100; ++attempt) {
        const fs::path candidate =
            fs::temp_directory_path() / ("orvane-test-" + std::to_string(random()));
        if (fs::create_directory(candidate)) {
            path_ = candidate;
            return;
        }
    }
    throw std::runtime_error("no temporary folder");
}

TempDir::~TempDir() {
    std::error_code ignored;
    fs::remove_all(path_, ignored);
}

std::string TempDir::file(std::string_view entry) const {
    // Joined as bytes: the standard library takes narrow names for UTF-8 on Windows, where they are
    // in the ANSI code page.
    return name() + static_cast<char>(fs::path::preferred_separator) + std::string(entry);
}

std::string TempDir::write(std::string_view entry, const std::vector<std::uint8_t>& bytes) const {
    std::ofstream stream(file(entry), std::ios::binary);
    for (const std::uint8_t byte : bytes)
        stream.put(static_cast<char>(byte));
    stream.close();
    EXPECT_TRUE(stream.good()) << "can't write " << entry;
    return file(entry);
}

std::string TempDir::write(std::string_view entry, std::string_view text) const {
    return write(entry, std::vector<std::uint8_t>(text.begin(), text.end()));
}

std::vector<std::uint8_t> TempDir::read(std::string_view entry) const {
    std::ifstream stream(file(entry), std::ios::binary);
    EXPECT_TRUE(stream.is_open()) << "can't read " << entry;
    std::vector<std::uint8_t> bytes;
    std::transform(std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>(),
                   std::back_inserter(bytes),
                   [](char unit) { return static_cast<std::uint8_t>(unit); });
    return bytes;
}

bool TempDir::has(std::string_view entry) const {
    return fs::exists(path_ / entry);
}

std::vector<std::string> TempDir::entries() const {
    std::vector<std::string> names;
    for (const fs::directory_entry& entry : fs::directory_iterator(path_)) {
        names.push_back(entry.path().filename().string());
    }
    std::ranges::sort(names);
    return names;
}

}  // namespace orvane::test

#pragma once

#include "pictures/bytes.h"

#include <random>

namespace orvane::test {

/// Choices for files at random, the same ones in every run.
class RandomBytes {
public:
    explicit RandomBytes(unsigned seed) : random_(seed) {}

    int upTo(int limit) { return static_cast<int>(random_() % static_cast<unsigned>(limit)); }
    int between(int least, int most) { return least + upTo(most - least + 1); }
    bool oneIn(int limit) { return upTo(limit) == 0; }
    std::uint8_t byte() { return static_cast<std::uint8_t>(random_() & 0xFF); }
    Bytes bytes(int count) {
        Bytes all;
        for (int i = 0; i < count; ++i)
            all.push_back(byte());
        return all;
    }

    /// Changes, adds and removes a few bytes of a file, more often in its header.
    void mutate(Bytes& file, int headerSize) {
        for (int change = between(1, 4); change > 0 && !file.empty(); --change) {
            const int size = static_cast<int>(file.size());
            const int place = upTo(oneIn(2) ? std::min(headerSize, size) : size);
            const auto at = file.begin() + place;
            switch (upTo(6)) {
            case 0:
                file.insert(at, byte());
                break;
            case 1:
                file.erase(at);
                break;
            case 2:
                file.resize(static_cast<std::size_t>(place));
                break;
            case 3:
                *at = static_cast<std::uint8_t>(*at ^ 1 << upTo(8));
                break;
            case 4:
                *at = static_cast<std::uint8_t>(*at + upTo(5) - 2);
                break;
            default:
                *at = byte();
            }
        }
    }

private:
    std::mt19937 random_;
};

}  // namespace orvane::test

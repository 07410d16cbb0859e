#pragma once

#include <cstddef>
#include <string>

namespace orvane::tool {

/// A progress bar in the last line of the terminal that stderr is. It is shown for at least
/// `kLeastFiles` files, nothing of it stays when it ends, and where stderr is no terminal there is
/// none.
class Progress {
public:
    static constexpr std::size_t kLeastFiles = 20;

    explicit Progress(std::size_t files);
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;
    ~Progress() { erase(); }

    /// Shows that `done` files are ready. The terminal is written to only when that looks
    /// different.
    void show(std::size_t done);

    /// Has to be called before each line of output: takes the bar away if the line would run into
    /// it, because stdout is a terminal, too.
    void makeWay();

private:
    void erase();

    std::size_t files_;
    bool enabled_;
    bool sharesTerminal_;
    std::string shown_;
};

}  // namespace orvane::tool

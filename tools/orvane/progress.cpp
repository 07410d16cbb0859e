#include "progress.h"

#include "system.h"

namespace orvane::tool {

namespace {

std::string barText(std::size_t done, std::size_t all) {
    constexpr std::size_t kCells = 40;
    const std::size_t filled = done * kCells / all;
    std::string percent = std::to_string(done * 100 / all);
    percent.insert(0, 4 - percent.size(), ' ');
    return "[" + std::string(filled, '#') + std::string(kCells - filled, '-') + "]" + percent + "%";
}

}  // namespace

Progress::Progress(std::size_t files)
    : files_(files), enabled_(files >= kLeastFiles && isTerminal(Stream::errors)),
      sharesTerminal_(enabled_ && isTerminal(Stream::output)) {}

void Progress::show(std::size_t done) {
    if (!enabled_) return;
    const std::string text = barText(done, files_);
    if (text == shown_) return;
    writeToErrors("\r" + text);
    shown_ = text;
}

void Progress::makeWay() {
    if (sharesTerminal_) erase();
}

// The bar never gets shorter, and blanks work on every terminal.
void Progress::erase() {
    if (shown_.empty()) return;
    writeToErrors("\r" + std::string(shown_.size(), ' ') + "\r");
    shown_.clear();
}

}  // namespace orvane::tool

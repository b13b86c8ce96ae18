#include "cli/Progress.hpp"

#include "cli/Console.hpp"

#include <fmt/format.h>

namespace tessgen::cli {

Progress::Progress()
    : possible_(statusCanBeShown()), begin_(Clock::now()), next_(begin_ + std::chrono::milliseconds(500)) {}

Progress::~Progress() {
    if (shown_) {
        showStatus("");
    }
}

void Progress::show(std::uint64_t records, std::uint64_t bytes) {
    if (!possible_) {
        return;
    }
    const auto now = Clock::now();
    if (now < next_) {
        return;
    }
    const std::chrono::duration<double> passed = now - begin_;
    showStatus(fmt::format("{} records, {} MB, {:.0f} records/s", records, bytes / 1'000'000,
                           static_cast<double>(records) / passed.count()));
    shown_ = true;
    next_ = now + std::chrono::milliseconds(100);
}

} // namespace tessgen::cli

#include "cli/output/Progress.hpp"

#include "cli/output/Console.hpp"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <string>

namespace tessgen::cli {

namespace {

// "[##########              ] 42 %, 0:07 left". `part` is above 0.
std::string progressBar(double part, double seconds) {
    constexpr std::size_t barWidth = 24;
    const auto left = std::lround(seconds * (1 - part) / part);
    const auto width = static_cast<std::size_t>(part * barWidth);
    return fmt::format("[{:#<{}}{:{}}] {:.0f} %, {}:{:02} left", "", width, "", barWidth - width, part * 100, left / 60,
                       left % 60);
}

} // namespace

Progress::Progress(std::string_view unit, std::optional<std::uint64_t> size)
    : unit_(unit), size_(size), isTerminal_(statusCanBeShown()), begin_(Clock::now()),
      next_(begin_ + environmentMilliseconds("KELWHICH_PROGRESS_MS", std::chrono::milliseconds(500))) {}

void Progress::show(std::uint64_t count, std::uint64_t bytes) {
    if (!isTerminal_) {
        return;
    }
    const auto now = Clock::now();
    if (now < next_) {
        return;
    }
    const double seconds = std::max(0.001, std::chrono::duration<double>(now - begin_).count());
    auto text = fmt::format("{} {}, {} MB, {:.0f} {}/s", count, unit_, bytes / 1'000'000,
                            static_cast<double>(count) / seconds, unit_);
    if (size_ && *size_ > 0 && bytes > 0) {
        const double part = static_cast<double>(bytes) / static_cast<double>(*size_);
        text += "  " + progressBar(std::min(part, 1.0), seconds); // a file may grow while it is read
    }
    showStatus(text);
    shown_ = true;
    next_ = now + std::chrono::milliseconds(100);
}

void Progress::clear() {
    if (shown_) {
        showStatus("");
        shown_ = false;
    }
}

} // namespace tessgen::cli

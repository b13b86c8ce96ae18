#include "cli/Progress.hpp"

#include "cli/Console.hpp"

#include <fmt/format.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>

namespace tessgen::cli {

namespace {

using namespace std::chrono_literals;
using Seconds = std::chrono::duration<double>;

constexpr auto patience = 500ms;
constexpr auto interval = 100ms;
constexpr std::size_t barWidth = 24;

// "83120 names, 41560 in a second".
std::string countText(std::uint64_t names, double seconds) {
    return fmt::format("{} names, {:.0f} in a second", names, static_cast<double>(names) / seconds);
}

// "42 % [##########              ]  ..., 0:07 left". `part` is more than 0.
std::string barText(double part, const std::string& count, double seconds) {
    const auto left = static_cast<long>(seconds * (1 - part) / part + 0.5);
    const auto width = static_cast<std::size_t>(part * barWidth);
    return fmt::format("{:3.0f} % [{:#<{}}{:{}}]  {}, {}:{:02} left", part * 100, "", width, "", barWidth - width,
                       count, left / 60, left % 60);
}

} // namespace

Progress::Progress(std::optional<std::uint64_t> size)
    : size_(size), isWanted_(statusIsShown()), next_(start_ + patience) {}

void Progress::show(std::uint64_t names, std::uint64_t bytes) {
    if (!isWanted_) {
        return;
    }
    const auto now = Clock::now();
    if (now < next_) {
        return;
    }
    next_ = now + interval;
    const double seconds = Seconds(now - start_).count();
    auto text = countText(names, seconds);
    if (size_ && *size_ > 0 && bytes > 0) {
        const double part = static_cast<double>(bytes) / static_cast<double>(*size_);
        text = barText(std::min(part, 1.0), text, seconds); // a file may grow while it is read
    }
    isShown_ = true;
    writeStatus(fmt::format("\r{}\x1B[K", text));
}

void Progress::clear() {
    if (isShown_) {
        writeStatus("\r\x1B[K");
        isShown_ = false;
    }
}

} // namespace tessgen::cli

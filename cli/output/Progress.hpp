// Progress of a long command: one line on the terminal, rewritten in place and removed at the end.
#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <string_view>

namespace tessgen::cli {

// Shows nothing in the first half second (KELWHICH_PROGRESS_MS), and nothing at all when standard error is not a
// terminal.
class Progress {
public:
    // `unit` names what is counted, such as "records". `size` is the size of the input in bytes; without it the
    // remaining time is not shown.
    explicit Progress(std::string_view unit, std::optional<std::uint64_t> size = std::nullopt);
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;
    ~Progress() { clear(); }

    // `count` are done, `bytes` of the input are read. Cheap enough to call often.
    void show(std::uint64_t count, std::uint64_t bytes);
    // Removes the line, so that something else can be written.
    void clear();

private:
    using Clock = std::chrono::steady_clock;

    std::string_view unit_;
    std::optional<std::uint64_t> size_;
    bool isTerminal_;
    bool shown_ = false;
    Clock::time_point begin_;
    Clock::time_point next_;
};

} // namespace tessgen::cli

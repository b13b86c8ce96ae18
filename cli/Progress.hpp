// How far a long command has come: one line on the terminal, rewritten, and gone at the end.
#pragma once

#include <chrono>
#include <cstdint>

namespace tessgen::cli {

// Shows nothing in the first half second, and nothing at all when standard error is no terminal.
class Progress {
public:
    Progress();
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;
    ~Progress();

    // May be called often.
    void show(std::uint64_t records, std::uint64_t bytes);

private:
    using Clock = std::chrono::steady_clock;

    bool possible_;
    bool shown_ = false;
    Clock::time_point begin_;
    Clock::time_point next_;
};

} // namespace tessgen::cli

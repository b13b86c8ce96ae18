// How far a long command has come: one line on the terminal, rewritten, and gone at the end.
#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <string_view>

namespace tessgen::cli {

// Shows nothing in the first half second, and nothing at all when standard error is no terminal.
class Progress {
public:
    // `things` are counted; they are in an input of `size` bytes, from which the remaining time is told if it is known.
    explicit Progress(std::string_view things, std::optional<std::uint64_t> size = std::nullopt);
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;
    ~Progress() { clear(); }

    // So many are done, and so many bytes of the input with them. May be called often.
    void show(std::uint64_t count, std::uint64_t bytes);
    // Takes the line away, for something else to be written.
    void clear();

private:
    using Clock = std::chrono::steady_clock;

    std::string_view things_;
    std::optional<std::uint64_t> size_;
    bool possible_;
    bool shown_ = false;
    Clock::time_point begin_;
    Clock::time_point next_;
};

} // namespace tessgen::cli

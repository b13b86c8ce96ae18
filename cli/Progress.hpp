// How far a long work is: one line on standard error, rewritten in place, for a person who waits.
//
// Nothing is shown in the first half second, nor when standard error is no terminal.
#pragma once

#include <chrono>
#include <cstdint>
#include <optional>

namespace tessgen::cli {

class Progress {
public:
    // `size`: of the whole input, in bytes, if it is known; then how far it is read and what time remains are shown.
    explicit Progress(std::optional<std::uint64_t> size);
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;
    ~Progress() { clear(); }

    // So many names are done, and so many bytes of the input with them.
    void show(std::uint64_t names, std::uint64_t bytes);
    // Takes the line away, for something else to be written.
    void clear();

private:
    using Clock = std::chrono::steady_clock;

    std::optional<std::uint64_t> size_;
    bool isWanted_;
    bool isShown_ = false;
    Clock::time_point start_ = Clock::now();
    Clock::time_point next_; // when to write the line again
};

} // namespace tessgen::cli

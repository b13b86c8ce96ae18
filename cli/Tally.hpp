// What came out of the names of one request, and the exit code that follows from it.
#pragma once

#include "cli/CommandLine.hpp"
#include "cli/Render.hpp"

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace tessgen::cli {

// In what an answer falls short.
struct Shortfall {
    bool isEmpty = false;
    std::string why; // it is not as required; empty otherwise
};

Shortfall shortfallOf(const Answer& answer, const Requirement& requirement);

class Tally {
public:
    void add(std::string_view name, const Shortfall& shortfall);
    void addFailed() { ++asked_, ++failed_; }

    std::size_t asked() const { return asked_; }

    // The exit code, after a line on standard error that says why when it is not 0. `isQuiet`: no line for what the
    // exit code alone tells.
    int judge(bool isQuiet) const;

private:
    std::size_t asked_ = 0;
    std::size_t failed_ = 0;
    std::size_t empty_ = 0;
    std::size_t unlike_ = 0;
    std::optional<std::string> only_; // the line when one name alone falls short
};

} // namespace tessgen::cli

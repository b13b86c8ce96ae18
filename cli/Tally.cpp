#include "cli/Tally.hpp"

#include "cli/Commands.hpp"
#include "cli/Console.hpp"

#include <fmt/format.h>

#include <cstddef>
#include <string>

namespace tessgen::cli {

namespace {

constexpr std::size_t longestName = 200; // bytes of a name that a complaint shows

} // namespace

Shortfall shortfallOf(const Answer& answer, const Requirement& requirement) {
    if (answer.candidates.empty()) {
        return {true, ""};
    }
    const auto& preferred = answer.candidates.front();
    if (requirement.user && !preferred.isUser) {
        return {false, fmt::format("is not the user's own first of all: {}", preferred.path)};
    }
    if (requirement.supported && !preferred.isSupported) {
        return {false, fmt::format("has a preferred candidate that is not supported: {}", preferred.path)};
    }
    if (requirement.single && answer.candidates.size() > 1) {
        return {false, fmt::format("has {} candidates, not a single one", answer.candidates.size())};
    }
    return {};
}

void Tally::add(std::string_view name, const Shortfall& shortfall) {
    ++asked_;
    if (!shortfall.isEmpty && shortfall.why.empty()) {
        return;
    }
    shortfall.isEmpty ? ++empty_ : ++unlike_;
    if (!only_) {
        const auto shown =
            name.size() <= longestName ? fmt::format("'{}'", name) : fmt::format("a name of {} bytes", name.size());
        only_ =
            shortfall.isEmpty ? fmt::format("no candidate for {}", shown) : fmt::format("{} {}", shown, shortfall.why);
    }
}

int Tally::judge(bool isQuiet) const {
    if (failed_ > 0) {
        if (asked_ > 1) {
            complain(fmt::format("{} of {} names not answered", failed_, asked_));
        }
        return failed_ == asked_ ? exitNothing : exitPartly;
    }
    if (empty_ + unlike_ == 0) {
        return exitYes;
    }
    if (isQuiet) {
        return exitNo;
    }
    if (empty_ + unlike_ == 1) {
        complain(*only_);
    } else if (unlike_ == 0) {
        complain(fmt::format("no candidate for {} of {} names", empty_, asked_));
    } else if (empty_ == 0) {
        complain(fmt::format("{} of {} names are not as required", unlike_, asked_));
    } else {
        complain(fmt::format("no candidate for {} of {} names, and {} are not as required", empty_, asked_, unlike_));
    }
    return exitNo;
}

} // namespace tessgen::cli

#include "cli/commands/Outcome.hpp"

#include "cli/commands/Commands.hpp"
#include "cli/output/Console.hpp"

#include <fmt/format.h>

#include <stdexcept>
#include <string>

namespace tessgen::cli {

void Outcome::addAnswer(std::string_view name, bool hasCandidates, std::string_view unmet) {
    ++answered_;
    if (hasCandidates && unmet.empty()) {
        return;
    }
    ++(hasCandidates ? short_ : empty_);
    if (firstReason_.empty()) {
        firstReason_ = hasCandidates ? fmt::format("{} {}", shownName(name), unmet)
                                     : fmt::format("no candidate for {}", shownName(name));
    }
}

void Outcome::addFailure(const std::string& name, const std::exception& error) {
    ++failed_;
    reportErrorOf(name, errorMessage(error));
}

int Outcome::exitCode(bool isQuiet) const {
    if (failed_ > 0) {
        if (asked() > 1 || reportsErrorsInJSON()) { // in text, what was said of the only name is the last line
            reportError(fmt::format("{} of {} names not answered", failed_, asked()));
        }
        return answered_ == 0 ? exitNothing : exitPartly;
    }
    if (empty_ + short_ == 0) {
        return exitYes;
    }
    if (!isQuiet) {
        reportError(empty_ + short_ == 1 ? firstReason_
                    : short_ == 0        ? fmt::format("no candidate for {} of {} names", empty_, asked())
                    : empty_ == 0        ? fmt::format("{} of {} names are not as required", short_, asked())
                                  : fmt::format("no candidate for {} of {} names, and {} are not as required", empty_,
                                                asked(), short_));
    }
    return exitNo;
}

} // namespace tessgen::cli

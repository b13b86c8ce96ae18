#include "cli/commands/Outcome.hpp"

#include "cli/commands/Commands.hpp"
#include "cli/output/Console.hpp"

#include <fmt/format.h>

#include <string>

namespace tessgen::cli {

void Outcome::addAnswer(std::string_view name, bool hasCandidates, std::string_view unmet) {
    ++answered_;
    if (hasCandidates && unmet.empty()) {
        return;
    }
    ++(hasCandidates ? unmet_ : empty_);
    if (firstReason_.empty()) {
        firstReason_ = hasCandidates ? fmt::format("{}: {}", shownName(name), unmet)
                                     : fmt::format("{} for {}", subject_.lacking, shownName(name));
    }
}

void Outcome::addFailure(const std::string& name, const std::exception& error) {
    ++failed_;
    reportErrorAbout(name, errorMessage(error));
}

int Outcome::exitCode(bool isQuiet) const {
    if (failed_ > 0 || !incomplete_.empty()) {
        if (failed_ > 0 && (asked() > 1 || reportsErrorsInJSON())) { // in text, the only name's own error is the last
            reportError(fmt::format("{} of {} {} not answered", failed_, asked(), subject_.many));
        }
        if (!incomplete_.empty()) {
            reportError(incomplete_);
        }
        return answered_ == 0 ? exitFailed : exitPartial;
    }
    if (empty_ + unmet_ == 0) {
        return exitYes;
    }
    if (!isQuiet) {
        reportError(empty_ + unmet_ == 1 ? firstReason_
                    : unmet_ == 0 ? fmt::format("{} for {} of {} {}", subject_.lacking, empty_, asked(), subject_.many)
                    : empty_ == 0 ? fmt::format("{} of {} names do not meet --require", unmet_, asked())
                                  : fmt::format("no candidate for {} of {} names, and {} do not meet --require", empty_,
                                                asked(), unmet_));
    }
    return exitNo;
}

} // namespace tessgen::cli

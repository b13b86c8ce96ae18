#include "cli/Names.hpp"

#include "cli/Commands.hpp"
#include "cli/Console.hpp"
#include "cli/Reason.hpp"
#include "standalone/Text.hpp"

#include <fmt/format.h>

#include <stdexcept>
#include <string>

namespace tessgen::cli {

std::u16string nameIn(std::string_view word) {
    if (word.empty()) {
        throw std::runtime_error("refused, a name cannot be empty");
    }
    if (word.find('\0') != std::string_view::npos) {
        throw std::runtime_error("refused, a name cannot hold a NUL");
    }
    auto name = standalone::toUTF16(word);
    if (!name) {
        throw std::runtime_error("refused, this is not UTF-8");
    }
    return *std::move(name);
}

std::string inUTF8(const std::u16string& text) {
    auto converted = standalone::toUTF8(text);
    if (!converted) {
        throw std::runtime_error("a text of the answer is not UTF-16");
    }
    return *std::move(converted);
}

void Tally::addAnswer(std::string_view name, bool hasCandidates, std::string_view shortfall) {
    ++answered_;
    if (hasCandidates && shortfall.empty()) {
        return;
    }
    ++(hasCandidates ? short_ : empty_);
    if (firstReason_.empty()) {
        firstReason_ = hasCandidates ? fmt::format("{} {}", shownName(name), shortfall)
                                     : fmt::format("no candidate for {}", shownName(name));
    }
}

void Tally::addFailure(const std::string& name, const std::exception& error) {
    ++failed_;
    complainOf(name, reasonOf(error));
}

int Tally::exitCode(bool isQuiet) const {
    if (failed_ > 0) {
        if (asked() > 1 || complainsInJSON()) { // in text, what was said of the only name is the last line
            complain(fmt::format("{} of {} names not answered", failed_, asked()));
        }
        return answered_ == 0 ? exitNothing : exitPartly;
    }
    if (empty_ + short_ == 0) {
        return exitYes;
    }
    if (!isQuiet) {
        complain(empty_ + short_ == 1 ? firstReason_
                 : short_ == 0        ? fmt::format("no candidate for {} of {} names", empty_, asked())
                 : empty_ == 0        ? fmt::format("{} of {} names are not as required", short_, asked())
                               : fmt::format("no candidate for {} of {} names, and {} are not as required", empty_,
                                             asked(), short_));
    }
    return exitNo;
}

} // namespace tessgen::cli

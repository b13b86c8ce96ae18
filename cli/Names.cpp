#include "cli/Names.hpp"

#include "cli/Commands.hpp"
#include "cli/Console.hpp"
#include "cli/Reason.hpp"
#include "standalone/Text.hpp"

#include <fmt/format.h>

#include <stdexcept>
#include <string>

namespace tessgen::cli {

std::u16string nameIn(const std::string& word) {
    if (word.empty()) {
        throw std::runtime_error("refused, a name cannot be empty");
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
        throw std::runtime_error("the path of a candidate is not UTF-16");
    }
    return *std::move(converted);
}

void Tally::addAnswer(const std::string& name, bool hasCandidates) {
    ++answered_;
    if (!hasCandidates && ++empty_ == 1) {
        firstEmpty_ = name;
    }
}

void Tally::addFailure(const std::string& name, const std::exception& error) {
    ++failed_;
    complain(fmt::format("'{}': {}", name, reasonOf(error)));
}

int Tally::exitCode() const {
    const auto asked = answered_ + failed_;
    if (failed_ > 0) {
        if (asked > 1) {
            complain(fmt::format("{} of {} names not answered", failed_, asked));
        }
        return answered_ == 0 ? exitNothing : exitPartly;
    }
    if (empty_ == 0) {
        return exitYes;
    }
    complain(empty_ == 1 ? fmt::format("no candidate for '{}'", firstEmpty_)
                         : fmt::format("no candidate for {} of {} names", empty_, asked));
    return exitNo;
}

} // namespace tessgen::cli

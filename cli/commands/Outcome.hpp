// Counts answered and failed names, or files, and derives the exit code from them.
#pragma once

#include <cstddef>
#include <exception>
#include <string>
#include <string_view>

namespace tessgen::cli {

class Outcome {
public:
    // What is asked about, in its messages, and what it can lack.
    struct Subject {
        std::string_view many;
        std::string_view lacking;
    };
    static constexpr Subject names = {"names", "no candidate"};
    static constexpr Subject files = {"files", "no plain or dotted name"};

    explicit Outcome(const Subject& subject = names) : subject_(subject) {}

    // `unmet`: why the answer does not meet the requirement; empty when it does.
    void addAnswer(std::string_view name, bool hasCandidates, std::string_view unmet = "");
    // Reports a name that could not be answered.
    void addFailure(const std::string& name, const std::exception& error);
    // Counts a failure that the caller reports.
    void addFailure() { ++failed_; }
    // What keeps the names from being all that there are: it is reported, and counts as a failure, but of no name.
    void setIncomplete(std::string_view reason) { incomplete_ = reason; }

    [[nodiscard]] std::size_t asked() const { return answered_ + failed_; }
    // The exit code. Reports why it is not 0; with `isQuiet` only failures are reported.
    [[nodiscard]] int exitCode(bool isQuiet = false) const;

private:
    Subject subject_;
    std::size_t answered_ = 0;
    std::size_t failed_ = 0;
    std::size_t empty_ = 0; // answered without a candidate
    std::size_t unmet_ = 0; // answered, but not as required
    std::string_view incomplete_;
    std::string firstReason_; // of the first name that is empty or unmet
};

} // namespace tessgen::cli

// What became of the names that were asked for.
#pragma once

#include <cstddef>
#include <exception>
#include <string>
#include <string_view>

namespace tessgen::cli {

// How many names were asked for and answered, and how the program ends by it.
class Outcome {
public:
    // `shortfall`: why the answer is not as required; empty when it is.
    void addAnswer(std::string_view name, bool hasCandidates, std::string_view unmet = "");
    // Complains about a name that could not be answered.
    void addFailure(const std::string& name, const std::exception& error);
    // Counts one that was complained about elsewhere.
    void addFailure() { ++failed_; }

    std::size_t asked() const { return answered_ + failed_; }
    bool anyAnswered() const { return answered_ > 0; }
    // The exit code, after a line on standard error that says why when it is not 0; `isQuiet`: no line about answers.
    int exitCode(bool isQuiet = false) const;

private:
    std::size_t answered_ = 0;
    std::size_t failed_ = 0;
    std::size_t empty_ = 0;
    std::size_t short_ = 0;   // not as required
    std::string firstReason_; // of the first name that has no candidate or is not as required
};

} // namespace tessgen::cli

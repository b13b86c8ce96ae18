// Names as they are given to the program, and what became of them.
#pragma once

#include <cstddef>
#include <exception>
#include <string>
#include <string_view>

namespace tessgen::cli {

// The name that a word of the command line, or a line, asks for.
// Errors: std::runtime_error, "refused, ...": the word is empty, is not UTF-8 or holds a NUL.
std::u16string nameIn(std::string_view word);

// Errors: std::runtime_error: the text, a candidate's, is not UTF-16.
std::string inUTF8(const std::u16string& text);

// How many names were asked for and answered, and how the program ends by it.
class Tally {
public:
    // `shortfall`: why the answer is not as required; empty when it is.
    void addAnswer(std::string_view name, bool hasCandidates, std::string_view shortfall = "");
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

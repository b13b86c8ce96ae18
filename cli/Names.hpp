// Names as they are given to the program, and what became of them.
#pragma once

#include <cstddef>
#include <exception>
#include <string>

namespace tessgen::cli {

// The name that a word of the command line, or a line, asks for.
// Errors: std::runtime_error, "refused, ...": the word is empty or is not UTF-8.
std::u16string nameIn(const std::string& word);

// Errors: std::runtime_error: the text, a candidate's, is not UTF-16.
std::string inUTF8(const std::u16string& text);

// How many names were asked for and answered, and how the program ends by it.
class Tally {
public:
    void addAnswer(const std::string& name, bool hasCandidates);
    // Complains about a name that could not be answered.
    void addFailure(const std::string& name, const std::exception& error);

    bool anyAnswered() const { return answered_ > 0; }
    // The exit code, after a line on standard error that says why when it is not 0.
    int exitCode() const;

private:
    std::size_t answered_ = 0;
    std::size_t failed_ = 0;
    std::size_t empty_ = 0;
    std::string firstEmpty_;
};

} // namespace tessgen::cli

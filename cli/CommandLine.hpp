// The command line, read against the tables of commands and options.
#pragma once

#include "cli/Options.hpp"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tessgen::cli {

// What --require asks of the answer to every name.
struct Requirement {
    bool user = false;      // the preferred candidate is the user's own
    bool supported = false; // code can be generated for the preferred candidate
    bool single = false;    // there is one candidate
};

// What the program was asked to do.
struct Request {
    Action action = Action::which;
    std::vector<std::string> operands; // names, or the one thing that the command is about
    std::optional<std::string> installation;
    std::optional<std::string> output;
    std::optional<std::string> whyNot;
    std::optional<std::string> record;
    std::optional<std::string> replay;
    std::optional<std::string> from; // the file of names; "-" is standard input
    Requirement require;
    bool json = false;
    bool first = false; // the preferred candidate alone
    bool quiet = false; // the exit code alone
    bool null = false;  // paths, each ended by a NUL
};

// Only the first word that is no option can be a command; after "--" no word is an option or a command.
// Errors: std::runtime_error with one line, when the words make no request.
Request readCommandLine(int count, char** words);

// Adds what an argument of --require asks: one of its words, or several with "," between them.
// Errors: std::runtime_error for any other word.
void addRequirements(Requirement& requirement, std::string_view words);

} // namespace tessgen::cli

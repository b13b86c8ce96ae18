// The command line, read against the tables of commands and options.
#pragma once

#include "cli/Options.hpp"

#include <optional>
#include <string>
#include <vector>

namespace tessgen::cli {

// What the program was asked to do.
struct Request {
    Action action = Action::which;
    std::vector<std::string> operands; // names, or the one thing that the command is about
    std::optional<std::string> installation;
    std::optional<std::string> output;
    std::optional<std::string> whyNot;
    std::optional<std::string> record;
    std::optional<std::string> replay;
    bool json = false;
};

// Only the first word that is no option can be a command; after "--" no word is an option or a command.
// Errors: std::runtime_error with one line, when the words make no request.
Request readCommandLine(int count, char** words);

} // namespace tessgen::cli

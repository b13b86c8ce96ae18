// The command line, read against the tables of commands and options.
#pragma once

#include "cli/options/Options.hpp"

#include <optional>
#include <string>
#include <vector>

namespace tessgen::cli {

// What the program was asked to do.
struct Request {
    Action action = Action::which;
    const CommandRow* command = nullptr; // the one that was said
    std::vector<std::string> operands;   // names, or the one thing that the command is about
    std::optional<std::string> installation;
    std::optional<std::string> output;
    std::optional<std::string> whyNot;
    std::optional<std::string> record;
    std::optional<std::string> replay;
    std::optional<std::string> from; // the file of names; "-" is standard input
    Requirement require;
    bool json = false;
    std::vector<std::string> kelFolders;        // init
    std::vector<std::string> sourceCodeFolders; // init
    bool records = false;
    bool force = false;
    bool first = false; // the preferred candidate alone
    bool quiet = false; // the exit code alone
    bool null = false;  // paths, each ended by a NUL
};

// Only the first word that is no option can be a command; after "--" no word is an option or a command.
// Errors: std::runtime_error with one line, when the words make no request.
Request readCommandLine(int count, char** words);

} // namespace tessgen::cli

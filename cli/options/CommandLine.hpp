// Reads the command line by the tables of commands and options.
#pragma once

#include "cli/options/Options.hpp"
#include "cli/reports/ReportFiles.hpp"

#include <optional>
#include <string>
#include <vector>

namespace tessgen::cli {

// What the command line asks for.
struct Request {
    Action action = Action::which;
    std::vector<std::string> operands; // the names or paths, or the single operand of the command
    bool mayMeanCommand = false;       // the first operand stands where a command could
    std::string onlyWord;              // of the command line: a command, which may have been meant as a name
    std::string topic;                 // help: a command, or the first word of some; empty for the overview
    std::optional<std::string> installation;
    std::optional<std::string> output;
    std::optional<std::string> whyNot;
    std::optional<std::string> record;
    std::optional<std::string> replay;
    std::optional<std::string> from;        // the file of names; "-" is standard input
    std::optional<std::string> lockToCheck; // "-" is standard input
    Requirement require;
    ReportTargets reports;
    std::optional<std::string> names;                                 // check: a file of uses
    std::optional<analysis::Level> failOn = analysis::Level::warning; // check
    std::vector<std::string> only;                                    // check: codes; empty for all
    std::vector<std::string> except;
    std::optional<std::string> baseline; // check
    bool updateBaseline = false;
    bool json = false;
    std::vector<std::string> kelFolders;        // init
    std::vector<std::string> sourceCodeFolders; // init
    bool records = false;
    bool update = false;
    bool force = false;
    bool first = false; // only the preferred candidate
    bool quiet = false; // only the exit code
    bool verbose = false;
    bool null = false; // NUL-terminated paths
    bool live = false; // batch
    bool stats = false;
};

// Options may stand anywhere before "--". Only the first word that is not an option can begin a command; after "--" no
// word is an option or a command.
// Errors: std::runtime_error with one line for a usage error.
Request readCommandLine(int count, char** words);

} // namespace tessgen::cli

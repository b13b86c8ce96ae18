// What the help of a command and the man page say beyond the tables of commands and options: columns and examples.
#pragma once

#include "cli/options/Options.hpp"

#include <span>
#include <string_view>

namespace tessgen::cli {

struct Example {
    std::string_view command;
    std::string_view purpose;
};

// One thing that is printed, and what it means; the same for an environment variable or a file in the man page.
struct Term {
    std::string_view word;
    std::string_view meaning;
};

struct CommandDetails {
    Action action;
    std::span<const Term> columns;
    std::span<const Example> examples; // at least one
};

// Null when there are none for this command.
const CommandDetails* findDetails(const CommandRow& command);

// What the option does for this command: its row's help, unless the command has words of its own for it.
std::string_view helpOf(const OptionRow& row, const CommandRow& command);

} // namespace tessgen::cli

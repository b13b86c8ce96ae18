// The one table of commands and the one table of options: what is read on the command line, and what help says of it.
#pragma once

#include <span>
#include <string>
#include <string_view>

namespace tessgen::cli {

struct Request;

enum class Action : unsigned { which, explain, batch, storeBuild, doctor, help, version };

constexpr unsigned bit(Action action) {
    return 1U << static_cast<unsigned>(action);
}

enum class Operands {
    names, // one or more, and every word after the first is one
    one,
    optional, // one or none
    none,
};

struct CommandRow {
    Action action;
    std::string_view word;
    std::string_view secondWord; // empty: the command is one word
    std::string_view operands;   // how help writes them
    Operands takes;
    std::string_view help;

    std::string words() const;
};

struct OptionRow {
    const char* name;
    char letter;          // 0: the option has a name only
    const char* argument; // nullptr: the option takes none
    unsigned commands;    // bits of the actions that it belongs to
    std::string_view help;
    void (*apply)(Request& request, const char* argument);
};

// The first command is the one that need not be said.
extern const std::span<const CommandRow> commandTable;
extern const std::span<const OptionRow> optionTable;

// What --help prints.
std::string helpText();

} // namespace tessgen::cli

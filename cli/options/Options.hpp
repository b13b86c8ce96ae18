// The one table of commands and the one table of options: what is read on the command line, what help, the man page and
// the completions of shells say of it.
#pragma once

#include <span>
#include <string>
#include <string_view>

namespace tessgen::cli {

struct Request;

enum class Action : unsigned {
    which,
    explain,
    storeBuild,
    storeInfo,
    storeVerify,
    storeExport,
    indexBuild,
    indexVerify,
    config,
    init,
    batch,
    doctor,
    help,
    version
};

constexpr unsigned bit(Action action) {
    return 1U << static_cast<unsigned>(action);
}

enum class Operands {
    names, // one or more, and every word after the first is one
    one,
    optional, // one or none
    none,
};

// What a shell offers for an operand or for the argument of an option.
enum class Completes { files, folders, nothing };

struct CommandRow {
    Action action;
    std::string_view word;
    std::string_view secondWord; // empty: the command is one word
    std::string_view operands;   // how help writes them
    Operands takes;
    std::string_view help;
    Completes completes = Completes::files;

    std::string words() const;
};

struct OptionRow {
    const char* name;
    char letter;          // 0: the option has a name only
    const char* argument; // nullptr: the option takes none
    unsigned commands;    // bits of the actions that it belongs to
    std::string_view help;
    void (*apply)(Request& request, const char* argument);
    Completes completes = Completes::files;
    std::string_view choices = {}; // the only arguments that there are, with a space between them

    bool belongsTo(const CommandRow& command) const;
    bool belongsToAll() const;
};

// The first command is the one that need not be said.
extern const std::span<const CommandRow> commandTable;
extern const std::span<const OptionRow> optionTable;

struct Requirement {
    bool user = false;      // the preferred candidate is the user's own
    bool supported = false; // code can be generated for the preferred candidate
    bool single = false;    // there is one candidate
};

// Adds what an argument of --require asks: one of its words, or several with "," between them.
// Errors: std::runtime_error for any other word.
void addRequirements(Requirement& requirement, std::string_view words);

} // namespace tessgen::cli

// The tables of commands and options: the command line is read by them, and help, man page and shell completions are
// made from them.
#pragma once

#include "analysis/Finding.hpp"

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

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
    lsp,
    doctor,
    provides,
    lock,
    diff,
    check,
    completeName,
    help, // also by --help
    version
};

constexpr unsigned bit(Action action) {
    return 1U << static_cast<unsigned>(action);
}

enum class Operands {
    names, // one or more
    one,
    two,
    any,      // none or more
    optional, // at most one
    none,
};

// What a shell completes for an operand or for the argument of an option.
enum class Completes { files, folders, commands, names, nothing };

struct CommandRow {
    Action action;
    std::string_view word;
    std::string_view secondWord; // empty for a command of one word
    std::string_view operands;   // as help shows them
    Operands takes;
    std::string_view help;
    Completes completes = Completes::files;

    [[nodiscard]] std::string words() const;
    [[nodiscard]] bool takesSeveral() const {
        return takes == Operands::names || takes == Operands::any || takes == Operands::two;
    }
};

struct OptionRow {
    const char* name;
    char letter;          // 0 for none
    const char* argument; // nullptr for none
    unsigned commands;    // bits of the actions that accept it
    std::string_view help;
    void (*apply)(Request& request, const char* argument);
    Completes completes = Completes::files;
    std::string_view choices = {}; // all valid arguments, separated by spaces; after one with "=", a file follows

    [[nodiscard]] bool belongsTo(const CommandRow& command) const;
    [[nodiscard]] bool belongsToAll() const;
};

// The first command is the default. The hidden one, which the completions of shells run, is not among them.
inline constexpr std::string_view hiddenWord = "__complete";
extern const std::span<const CommandRow> commandTable;
extern const std::span<const OptionRow> optionTable;

// The command that `words` begin with, the hidden one included; null when there is none.
const CommandRow* findCommand(std::span<const std::string> words);

// The commands of two words that begin with `word`, as text; empty when there are none.
std::vector<std::string> commandsBeginning(std::string_view word);

struct Requirement {
    bool user = false;      // the preferred candidate is the user's
    bool supported = false; // the preferred candidate is supported
    bool single = false;    // there is exactly one candidate
};

// Adds the words of an argument of --require, which are separated by ",".
// Errors: std::runtime_error for an unknown word.
void addRequirements(Requirement& requirement, std::string_view words);

// Adds the codes of an argument of --only or --except, which are separated by ",".
// Errors: std::runtime_error for an unknown code.
void addCodes(std::vector<std::string>& chosen, std::string_view option, std::string_view words);

// The level that an argument of --fail-on names; nothing for "never".
// Errors: std::runtime_error for another word.
std::optional<analysis::Level> levelNamed(std::string_view word);

} // namespace tessgen::cli

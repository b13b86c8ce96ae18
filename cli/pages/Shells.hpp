// What the completions of all shells share. They follow the words that are no option as the program does: the first
// one, or the first two, may be a command, and after the first name every word is a name.
#pragma once

#include "cli/options/Options.hpp"

#include <string>
#include <string_view>
#include <vector>

namespace tessgen::cli {

// The text between apostrophes, as sh, bash and zsh read it.
std::string quoted(std::string_view text);

// The commands, of those with the same first word one.
std::vector<const CommandRow*> firstWords();

// The commands of two words that begin with that word; empty when it is a command itself.
std::vector<const CommandRow*> commandsBelow(const CommandRow& first);

// What is said of a first word: what the command does, or which second words there are.
std::string helpOfFirstWord(const CommandRow& first);

// How many words the command has.
inline int wordCount(const CommandRow& row) {
    return row.secondWord.empty() ? 1 : 2;
}

inline bool takesFile(const CommandRow& row) {
    return row.takes == Operands::one || row.takes == Operands::optional;
}

// The option's letter, if it has one, `between` and its name, as they are typed.
std::string spellings(const OptionRow& row, std::string_view between);

// The spellings of every option that takes an argument, one option after the other.
std::string spellingsWithArgument(std::string_view between);

} // namespace tessgen::cli

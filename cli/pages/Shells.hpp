// What the completions of all shells share. They read operands as the program does: the first one or two words may be a
// command; without one, the command is which.
#pragma once

#include "cli/options/Options.hpp"

#include <string>
#include <string_view>
#include <vector>

namespace tessgen::cli {

// `text` in single quotes, for sh, bash and zsh.
std::string quoted(std::string_view text);

// The commands, one for each first word.
std::vector<const CommandRow*> firstWords();

// The words that can begin a command, with `between` between them.
std::string wordsOfCommands(std::string_view between);

// The commands of two words with this first word; empty when it is a command by itself.
std::vector<const CommandRow*> commandsBelow(const CommandRow& first);

// Their second words, with `between` between them.
std::string secondWords(const CommandRow& first, std::string_view between);

// The help of a first word: what the command does, or the list of second words.
std::string helpOfFirstWord(const CommandRow& first);

// The number of words of the command.
inline int wordCount(const CommandRow& row) {
    return row.secondWord.empty() ? 1 : 2;
}

// How the option is typed: its letter, if it has one, `between`, and its name.
std::string spellings(const OptionRow& row, std::string_view between);

// The spellings of all options that take an argument.
std::string spellingsWithArgument(std::string_view between);

} // namespace tessgen::cli

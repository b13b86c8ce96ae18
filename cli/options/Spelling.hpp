// What a mistyped command or option was meant to be, and what --help is asked about.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace tessgen::cli {

// Whether an option has this name, without "--".
bool isOption(std::string_view name);

// The options that `word`, with one "-" or two, begins or is nearest to: "--first". Empty when none is near.
std::vector<std::string> optionsLike(std::string_view word);

// The first words of commands that are nearest to `word`. Empty when none is near.
std::vector<std::string> commandsLike(std::string_view word);

// Says which command of two words was meant, if the second word is nearly one's; the first one is a command's.
// Errors: std::runtime_error then.
void refuseSecondWord(const std::vector<std::string>& words);

// The command or group of commands that `words` begin with; empty, which means the overview, for any other words.
// Errors: std::runtime_error when they begin with nothing such, but nearly do or `mustBeCommand` says that they must.
std::string topicOf(const std::vector<std::string>& words, bool mustBeCommand);

// "unknown KIND 'WORD'", with what was meant.
// Errors: std::runtime_error always.
[[noreturn]] void refuseWord(std::string_view kind, std::string_view word, const std::vector<std::string>& meant);

} // namespace tessgen::cli

// Commands as the program prints them, for a person to type next. Safe to show, and safe for a shell.
#pragma once

#include "cli/options/CommandLine.hpp"

#include <string>
#include <string_view>

namespace tessgen::cli {

// The program, with the installation that the request names.
std::string thisProgram(const Request& request);

// A name after the program, with "-- " before it when it would be read as a command or an option; NAME for none.
std::string nameWord(const std::string& name);

// "PROGRAM explain OPTIONS NAME"; `options` end with a space or are empty.
std::string explainCommand(const Request& request, std::string_view options, const std::string& name);

} // namespace tessgen::cli

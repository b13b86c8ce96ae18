// The man page and the shell completions, generated from the tables of commands and options. Each function returns the
// text of one file.
#pragma once

#include <string>

namespace tessgen::cli {

std::string manPage();        // man1/kelwhich.1
std::string bashCompletion(); // kelwhich
std::string zshCompletion();  // _kelwhich
std::string fishCompletion(); // kelwhich.fish

} // namespace tessgen::cli

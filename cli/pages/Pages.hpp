// What is installed beside the program, made from the tables of commands and options: the man page, and what the
// shells need to complete a command line. Each is the text of one file.
#pragma once

#include <string>

namespace tessgen::cli {

std::string manPage();        // man1/kelwhich.1
std::string bashCompletion(); // kelwhich
std::string zshCompletion();  // _kelwhich
std::string fishCompletion(); // kelwhich.fish

} // namespace tessgen::cli

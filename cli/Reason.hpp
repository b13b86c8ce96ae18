// What an error says to a user.
#pragma once

#include <exception>
#include <string>

namespace tessgen::cli {

// The error's own words, but for those of the standard library about a file: its path, what failed and what to do.
std::string reasonOf(const std::exception& error);

} // namespace tessgen::cli

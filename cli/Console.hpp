// The program's two streams: answers go to standard output, complaints to standard error.
#pragma once

#include <string>
#include <string_view>

namespace tessgen::cli {

// Call first. A reader that goes away becomes an error of the write that finds out, and a stream that was closed by
// the caller is not taken over by the next file that is opened.
void prepareStreams();

// Writes all of `text` to standard output, as it is.
// Errors: std::runtime_error when not all of it could be written.
void writeOut(std::string_view text);

// Writes `text` to standard error, as it is. Nobody is left to be told when that fails.
void writeStatus(std::string_view text);

// One line on standard error, escaped. Nobody is left to be told when that fails.
void complain(std::string_view message);

bool outputIsTerminal();

// True when standard error is a terminal that can rewrite a line, and the answers do not go to a terminal as well.
bool statusIsShown();

// True for a terminal that may show colours and whose user did not ask for none.
bool outputIsColoured();

// The value of an environment variable; empty when it is not set.
std::string environment(const char* name);

} // namespace tessgen::cli

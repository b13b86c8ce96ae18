// The program's two streams: answers go to standard output, complaints to standard error.
#pragma once

#include <exception>
#include <string>
#include <string_view>

namespace tessgen::cli {

// Call first. A reader that goes away and a file that may not grow become errors of the write that finds out, and a
// stream that was closed by the caller is not taken over by the next file that is opened.
void prepareStreams();

// Writes all of `text` to standard output, as it is.
// Errors: std::runtime_error when not all of it could be written.
void writeOut(std::string_view text);

// One line on standard error, escaped. Nobody is left to be told when that fails.
void reportError(std::string_view message);

// The same about one name, or about a line ("FILE:NUMBER:"), which is not the last of the program: written at once.
void reportErrorOf(std::string_view query, std::string_view message);
void reportErrorOfLine(std::string_view place, std::string_view message);

// A name as a complaint shows it: in quotes, or a long one by its size.
std::string shownName(std::string_view name);

// From now on complaints are JSON, one object a line: {"schema":"kelwhich/1","query":...,"error":{"message":...}},
// and the last one has the program's exit code, {...,"error":{"message":...,"exit":2}}. Text that is not UTF-8 is
// escaped in it.
void reportErrorsInJSON();
bool reportsErrorsInJSON();

// Complains of the exception that is being handled, whatever it is.
void reportFailure() noexcept;

// Call last, since until then the last complaint in JSON waits for the exit code.
void flushErrors(int exitCode) noexcept;

// Shows `text`, in ASCII, in place of what was shown in the terminal's last line, on standard error, as far as it fits
// into a line; "" takes it away.
void showStatus(std::string_view text);
bool statusCanBeShown();

bool outputIsTerminal();

// True for a terminal that may show colours and whose user did not ask for none.
bool outputIsColoured();

// The value of an environment variable; empty when it is not set.
std::string environment(const char* name);

// What is sent to a terminal around a piece of text; all empty when there are no colours.
struct Style {
    std::string_view name;
    std::string_view first;
    std::string_view aside;
    std::string_view end;
};

constexpr Style styleOf(bool coloured) {
    return coloured ? Style{"\x1B[1m", "\x1B[32m", "\x1B[2m", "\x1B[0m"} : Style{};
}

// The error's own words, but for those of the standard library about a file: its path, what failed and what to do.
std::string errorMessage(const std::exception& error);

} // namespace tessgen::cli

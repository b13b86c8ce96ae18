// The program's two streams: answers go to standard output, errors to standard error.
#pragma once

#include <chrono>
#include <exception>
#include <string>
#include <string_view>

namespace tessgen::cli {

// Call first. Afterwards a broken pipe and a file-size limit are errors of the write instead of signals, and a standard
// stream that the caller closed is not reused by the next file that is opened.
void prepareStreams();

// The reader of standard output went away. Whoever catches it cleans up, then calls `endByBrokenPipe`.
class ReaderGone final : public std::exception {
public:
    [[nodiscard]] const char* what() const noexcept override { return "the reader of standard output went away"; }
};
// Ends the program by the signal SIGPIPE, as it ends other filters.
[[noreturn]] void endByBrokenPipe() noexcept;

// Writes `text` to standard output, unescaped.
// Errors: ReaderGone; std::runtime_error when it could not be written whole for another reason.
void writeOut(std::string_view text);

// Writes one line to standard error, escaped. A failure to do so is ignored.
void reportError(std::string_view message);

// The same for an error about one name, or about a line of input ("FILE:NUMBER:"). Such an error is never the last line
// of the program, so it is written at once.
void reportErrorAbout(std::string_view query, std::string_view message);
void reportErrorInLine(std::string_view place, std::string_view message);

// Something to know that is no error; as JSON {"schema":"kelwhich/1","note":{"message":...}}. Written at once.
void reportNote(std::string_view message);

// A name as errors show it: in quotes; a name longer than 200 bytes is replaced by its length.
std::string shownName(std::string_view name);

// From now on errors are JSON, one object per line: {"schema":"kelwhich/1","query":...,"error":{"message":...}}. The
// last one carries the exit code: {...,"error":{"message":...,"exit":2}}. Text that is not UTF-8 is escaped in it.
void reportErrorsInJSON();
bool reportsErrorsInJSON();

// Reports the exception that is being handled, of any type.
void reportFailure() noexcept;

// Call last: writes the pending JSON error with the exit code.
void flushErrors(int exitCode) noexcept;

// Replaces the status line on the terminal of standard error by `text`, which is ASCII, cut off at the terminal's
// width;
// "" removes it.
void showStatus(std::string_view text);
bool statusCanBeShown();

bool outputIsTerminal();

// When output and errors are coloured: "always", "never", or "auto", which is the default: never with NO_COLOR in the
// environment, else always with FORCE_COLOR (other than 0), else on a terminal with colours.
// Errors: std::runtime_error for another word.
void setColour(std::string_view when);
bool outputIsColoured();

// The value of an environment variable; empty when it is not set.
std::string environment(const char* name);

// An environment variable that holds a number of milliseconds; `fallback` when it does not.
std::chrono::milliseconds environmentMilliseconds(const char* name, std::chrono::milliseconds fallback);

// Escape sequences around parts of the text; all empty without colours.
struct Style {
    std::string_view name;
    std::string_view first;
    std::string_view aside; // never around what one compares
    std::string_view error;
    std::string_view warning;
    std::string_view end;
};

constexpr Style outputStyle(bool coloured) {
    return coloured ? Style{"\x1B[1m", "\x1B[32m", "\x1B[2m", "\x1B[31m", "\x1B[33m", "\x1B[0m"} : Style{};
}

// The message of `error`. For std::filesystem::filesystem_error: the path, what failed and what to do.
std::string errorMessage(const std::exception& error);

} // namespace tessgen::cli

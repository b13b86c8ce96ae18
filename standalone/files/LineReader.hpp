// A text file, read line by line.
#pragma once

#include "standalone/files/Descriptor.hpp"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>

namespace tessgen::standalone {

// A line that is longer than any that is read.
class LineTooLong final : public std::runtime_error {
public:
    static constexpr const char* message = "the line is longer than 1 MiB";

    explicit LineTooLong(const std::string& place) : std::runtime_error(place + " " + message) {}
};

class LineReader {
public:
    // Errors, here and in `next`: std::runtime_error with one line that names the file and the cause.
    // `end` is '\n' or '\0'.
    explicit LineReader(const std::string& file, char end = '\n');
    static LineReader ofStandardInput(char end = '\n');
    // Of a file, or of standard input for "-".
    static LineReader ofInput(const std::string& file, char end = '\n');
    LineReader(const LineReader&) = delete;
    LineReader& operator=(const LineReader&) = delete;

    static constexpr std::size_t longestLine = std::size_t{1} << 20U; // bytes before its end

    // The next line without its end; nothing at the end of the file. Where lines end with '\n', also without '\r's
    // before it, and without a byte-order mark before the first line. Valid until the next call.
    // Errors: LineTooLong, as soon as that is known; the next call then returns the line after it.
    std::optional<std::string_view> next();

    // In bytes; empty when the file is not a regular one.
    [[nodiscard]] std::optional<std::uint64_t> size() const;
    // Whether `next` would read from the file, and so may block.
    [[nodiscard]] bool mayWait() const;

    [[nodiscard]] std::uint64_t bytes() const { return bytes_; }   // of the lines returned so far
    [[nodiscard]] std::uint64_t number() const { return number_; } // of the current line, counted from 1
    // The current line in an error: "FILE:NUMBER:".
    [[nodiscard]] std::string place() const { return file_ + ":" + std::to_string(number_) + ":"; }

private:
    explicit LineReader(char end) : end_(end) {}

    // Where the line ends in the buffer, which is read on until it does; npos at the end of the file.
    std::size_t endOfLine();
    void skipRest();
    void readBlock();
    [[noreturn]] void fail(const char* what) const;

    char end_;
    std::string file_ = "standard input";
    Descriptor own_; // none for standard input, which stays open
    int descriptor_ = STDIN_FILENO;
    std::string buffer_; // the current line up to `begin_`, then what was read after it
    std::size_t begin_ = 0;
    bool isAtEnd_ = false;
    bool skips_ = false; // what is left of a line that was too long
    std::uint64_t number_ = 0;
    std::uint64_t bytes_ = 0;
};

// Calls `take` with each line that is left, and `refuse` with the reason when the line is too long or `take` throws
// std::runtime_error.
// Errors: those of the reader, and of `refuse`.
void forEachLine(LineReader& lines, const std::function<void(std::string_view line)>& take,
                 const std::function<void(const char* reason)>& refuse);

} // namespace tessgen::standalone

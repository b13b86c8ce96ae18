// A text file, read line by line.
#pragma once

#include "standalone/files/Descriptor.hpp"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace tessgen::standalone {

class LineReader {
public:
    // Errors, here and in `next`: std::runtime_error with one line that names the file and the cause.
    // `end` is '\n' or '\0'.
    explicit LineReader(const std::string& file, char end = '\n');
    static LineReader ofStandardInput(char end = '\n');
    LineReader(const LineReader&) = delete;
    LineReader& operator=(const LineReader&) = delete;

    // The next line, of any length, without its end; nothing at the end of the file. Where lines end with '\n', also
    // without '\r's before it, and without a byte-order mark before the first line. Valid until the next call.
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

    void readBlock();
    [[noreturn]] void fail(const char* what) const;

    char end_;
    std::string file_ = "standard input";
    Descriptor own_; // none for standard input, which stays open
    int descriptor_ = STDIN_FILENO;
    std::string buffer_; // the current line up to `begin_`, then what was read after it
    std::size_t begin_ = 0;
    bool isAtEnd_ = false;
    std::uint64_t number_ = 0;
    std::uint64_t bytes_ = 0;
};

} // namespace tessgen::standalone

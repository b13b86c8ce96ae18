// A text file, read line by line.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace tessgen::standalone {

class LineReader {
public:
    // Errors, here and in `next`: std::runtime_error with one line that names the file and the cause.
    explicit LineReader(const std::string& file);
    LineReader(const LineReader&) = delete;
    LineReader& operator=(const LineReader&) = delete;
    ~LineReader();

    // The next line, of whatever length, without its end and without a byte-order mark before the first one; nothing
    // at the end of the file. Valid until the next call.
    std::optional<std::string_view> next();

    std::uint64_t number() const { return number_; } // of the current line, counted from 1
    // How an error names the current line: "FILE:NUMBER:".
    std::string place() const { return file_ + ":" + std::to_string(number_) + ":"; }

private:
    [[noreturn]] void fail(const char* what) const;

    std::string file_;
    std::unique_ptr<std::FILE, int (*)(std::FILE*)> stream_;
    char* line_ = nullptr;
    std::size_t capacity_ = 0;
    std::uint64_t number_ = 0;
};

} // namespace tessgen::standalone

// What counts as a name in the text of a program.
//
// Threads: const operations may be called concurrently.
#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace tessgen::cli {

// Bytes of a text.
struct TextRange {
    std::size_t begin;
    std::size_t end;

    friend bool operator==(const TextRange&, const TextRange&) = default;
};

class NamePattern {
public:
    // Letters, digits and "_", with dots between. Beyond ASCII a character is a letter unless it is punctuation, a
    // symbol or not to be seen; the punctuation of small scripts counts as letters.
    NamePattern();
    // What a POSIX extended regular expression matches, byte by byte.
    // Errors: std::runtime_error for another text.
    explicit NamePattern(const std::string& expression);

    static constexpr std::size_t reach = 1000; // bytes of a line before and after the place that is asked for

    // The name in a line that a byte is in, else the one that ends there; as far as the reach goes.
    [[nodiscard]] std::optional<TextRange> find(std::string_view line, std::size_t offset) const;

    // What of a name stands before a byte, a dot at the end included; an empty range where no name is begun.
    [[nodiscard]] TextRange findBeginning(std::string_view line, std::size_t offset) const;

    // Whether the whole text is one name.
    [[nodiscard]] bool matches(std::string_view text) const;

private:
    // The first name that begins at a byte or after it, at least one byte long.
    std::function<std::optional<TextRange>(std::string_view line, std::size_t from)> next_;
};

} // namespace tessgen::cli

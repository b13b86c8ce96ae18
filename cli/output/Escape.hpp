// Makes text safe to show, and names safe to use.
#pragma once

#include "standalone/text/Text.hpp"

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace tessgen::cli {

// `text` with every character spelled out that a person could not see or that could control the terminal, line ends
// included. `text` should be UTF-8, but may be any bytes. Reversible: different texts have different results.
//   a\b                                 -> a\\b
//   control and invisible characters    -> \u{1B}, \u{202E}, \u{200B}, \u{A0}
//   a space at the beginning or the end -> \u{20}
//   a byte that is not UTF-8            -> \x{FF}
std::string escaped(std::string_view text);

// The same of UTF-16, with a lone surrogate as \u{D800}; and the text that was escaped so, nothing when there is none
// without a lone surrogate.
std::string escapedText(const std::u16string& text);
std::optional<std::u16string> unescapedText(std::string_view escaped);

// `text` for a JSON document: escaped only when it is not UTF-8.
std::string forJSON(std::string_view text);

// A JSON text with the same characters written as \uXXXX, which does not change its meaning.
std::string escapedJSON(std::string_view json);

// `text` as one word for a shell: quoted if necessary, and as safe to show as escaped text. Characters that need a code
// are written in the syntax of bash, ksh and zsh.
//   new/it's -> 'new/it'\''s'
//   a\b      -> $'a\\b'
std::string shellWord(std::string_view text);

// The name in a word of the command line or in a line of input.
// Errors: std::runtime_error when the word is empty, is not UTF-8 or holds a NUL.
std::u16string parseName(std::string_view word);

// Errors: std::runtime_error when `text`, part of an answer, is not UTF-16.
std::string inUTF8(const std::u16string& text);

// Characters from the first to the last one, by their Unicode numbers.
struct CodeRange {
    std::uint32_t first;
    std::uint32_t last;
};

// Whether one of the ranges, which are in ascending order, has this character.
bool isIn(std::span<const CodeRange> ranges, std::uint32_t character);

using standalone::counted;

} // namespace tessgen::cli

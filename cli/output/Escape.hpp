// Text made safe to look at.
#pragma once

#include "standalone/text/Text.hpp"

#include <string>
#include <string_view>

namespace tessgen::cli {

// `text` (meant to be UTF-8, but any bytes will do) with everything that a person could not see, or that could rule
// the terminal, spelled out; a line stays a line. Reversible: two texts never come out the same.
//   a\b                                 -> a\\b
//   control and invisible characters    -> \u{1B}, \u{202E}, \u{200B}, \u{A0}
//   a space at the beginning or the end -> \u{20}
//   a byte that is not UTF-8            -> \x{FF}
std::string escaped(std::string_view text);

// `text` as a JSON document can hold it: escaped only when it is not UTF-8.
std::string forJSON(std::string_view text);

// A JSON text, with the same characters written as \uXXXX; it means what it meant.
std::string escapedJSON(std::string_view json);

// A text as a shell takes it for one word: in quotes when it must be, and as safe to look at as an escaped text. Where
// that takes codes, they are those of bash, ksh and zsh.
//   new/it's -> 'new/it'\''s'
//   a\b      -> $'a\\b'
std::string shellWord(std::string_view text);

// The name that a word of the command line, or a line, asks for.
// Errors: std::runtime_error, "refused, ...": the word is empty, is not UTF-8 or holds a NUL.
std::u16string nameIn(std::string_view word);

// Errors: std::runtime_error: the text, a candidate's, is not UTF-16.
std::string inUTF8(const std::u16string& text);

using standalone::counted;

} // namespace tessgen::cli

// Positions in a text as an editor counts them: a line, and a character in it.
//
// Lines end with "\n", "\r\n" or "\r". Texts are UTF-8.
// Threads: any.
#pragma once

#include <cstddef>
#include <string_view>

namespace tessgen::cli {

// What a position counts in a line.
enum class PositionEncoding { utf16, utf8 };

// Counted from 0.
struct Position {
    std::size_t line = 0;
    std::size_t character = 0; // code units of the encoding

    friend bool operator==(const Position&, const Position&) = default;
};

// The byte at a position. A character beyond the end of its line means that end, a line beyond the last one the end of
// the text, and the middle of a character its beginning.
std::size_t offsetOf(std::string_view text, const Position& position, PositionEncoding encoding);

struct LineBegin {
    std::size_t line = 0;
    std::size_t offset = 0; // of its first byte
};

// The same, from a line that is known, which becomes the one of the result: quicker for one position after another.
std::size_t offsetOf(std::string_view text, const Position& position, PositionEncoding encoding, LineBegin& known);

// The position of a byte at which a character begins, or of the end of the text.
Position positionOf(std::string_view text, std::size_t offset, PositionEncoding encoding);

// The byte at which the line of a byte begins, and the one at which it ends.
std::size_t beginOfLine(std::string_view text, std::size_t offset);
std::size_t endOfLine(std::string_view text, std::size_t offset);

} // namespace tessgen::cli

#include "cli/lsp/Positions.hpp"

#include <algorithm>

namespace tessgen::cli {

namespace {

bool isLineEnd(char c) {
    return c == '\n' || c == '\r';
}

// The bytes and the UTF-16 code units of the character that begins with this byte.
struct Sizes {
    std::size_t bytes;
    std::size_t units;
};

Sizes sizesOf(char first) {
    const auto byte = static_cast<unsigned char>(first);
    return byte < 0x80 ? Sizes{1, 1} : byte < 0xE0 ? Sizes{2, 1} : byte < 0xF0 ? Sizes{3, 1} : Sizes{4, 2};
}

// The byte after the end of the line at `offset`; the text's size when there is none.
std::size_t nextLine(std::string_view text, std::size_t offset) {
    const auto end = endOfLine(text, offset);
    return std::min(end + (text.substr(end).starts_with("\r\n") ? 2 : 1), text.size());
}

// The beginning of the line before the one that begins at `offset`.
std::size_t previousLine(std::string_view text, std::size_t offset) {
    return beginOfLine(text, offset - (text.substr(0, offset).ends_with("\r\n") ? 2 : 1));
}

} // namespace

std::size_t endOfLine(std::string_view text, std::size_t offset) {
    // Not find_first_of, which is several times slower: a document may have a million lines.
    while (offset < text.size() && !isLineEnd(text[offset])) {
        ++offset;
    }
    return offset;
}

std::size_t beginOfLine(std::string_view text, std::size_t offset) {
    while (offset > 0 && !isLineEnd(text[offset - 1])) {
        --offset;
    }
    return offset;
}

std::size_t offsetOf(std::string_view text, const Position& position, PositionEncoding encoding) {
    LineBegin first;
    return offsetOf(text, position, encoding, first);
}

std::size_t offsetOf(std::string_view text, const Position& position, PositionEncoding encoding, LineBegin& known) {
    for (; known.line > position.line; --known.line) {
        known.offset = previousLine(text, known.offset);
    }
    for (; known.line < position.line; ++known.line) {
        if (endOfLine(text, known.offset) == text.size()) {
            return text.size();
        }
        known.offset = nextLine(text, known.offset);
    }
    auto offset = known.offset;
    const auto end = endOfLine(text, offset);
    for (std::size_t left = position.character; left > 0 && offset < end;) {
        const auto [bytes, units] = sizesOf(text[offset]);
        const auto size = encoding == PositionEncoding::utf8 ? bytes : units;
        if (size > left) {
            break;
        }
        left -= size;
        offset += bytes;
    }
    return offset;
}

Position positionOf(std::string_view text, std::size_t offset, PositionEncoding encoding) {
    Position position;
    std::size_t begin = 0;
    for (auto end = endOfLine(text, 0); end < offset; end = endOfLine(text, begin)) {
        const auto next = nextLine(text, begin);
        if (next > offset) { // between "\r" and "\n"
            break;
        }
        begin = next;
        ++position.line;
    }
    for (auto at = begin; at < offset;) {
        const auto [bytes, units] = sizesOf(text[at]);
        position.character += encoding == PositionEncoding::utf8 ? bytes : units;
        at += bytes;
    }
    return position;
}

} // namespace tessgen::cli

#include "cli/lsp/NamePattern.hpp"

#include "cli/output/Escape.hpp"
#include "standalone/text/Text.hpp"

#include <fmt/format.h>
#include <utf8.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <memory>
#include <regex.h>
#include <stdexcept>

namespace tessgen::cli {

namespace {

using Range = CodeRange;

// Punctuation, symbols, spaces and private characters, in ascending order.
constexpr std::array others{
    Range{0x0080, 0x00A9},   Range{0x00AB, 0x00B4},   Range{0x00B6, 0x00B9}, Range{0x00BB, 0x00BF},
    Range{0x00D7, 0x00D7},   Range{0x00F7, 0x00F7},   Range{0x2000, 0x206F}, Range{0x20A0, 0x20CF},
    Range{0x2190, 0x2BFF},   Range{0x2E00, 0x2E7F},   Range{0x3000, 0x3004}, Range{0x3008, 0x3020},
    Range{0xE000, 0xF8FF},   Range{0xFE10, 0xFE1F},   Range{0xFE30, 0xFE6F}, Range{0xFF01, 0xFF0F},
    Range{0xFF1A, 0xFF20},   Range{0xFF3B, 0xFF40},   Range{0xFF5B, 0xFF65}, Range{0xFFE0, 0xFFFF},
    Range{0x1F000, 0x1FAFF}, Range{0xF0000, 0x10FFFF}};

bool isLetter(std::string_view character) {
    if (character.size() == 1) {
        const char c = character.front();
        return ('a' <= c && c <= 'z') || ('A' <= c && c <= 'Z') || ('0' <= c && c <= '9') || c == '_';
    }
    const auto* at = character.data();
    return !isIn(others, utf8::unchecked::next(at)) && escaped(character) == character;
}

// The next byte at which a character begins; the end of the line.
std::size_t endOfCharacter(std::string_view line, std::size_t at) {
    while (at < line.size() && (static_cast<unsigned char>(line[at]) & 0xC0U) == 0x80) {
        ++at;
    }
    return at;
}

// The bytes from `from` on that are letters.
std::size_t lettersAt(std::string_view line, std::size_t from) {
    const auto* at = line.data() + from;
    const auto* const end = line.data() + line.size();
    while (at != end) {
        const auto* const begin = at;
        static_cast<void>(utf8::unchecked::next(at));
        if (!isLetter({begin, static_cast<std::size_t>(at - begin)})) {
            return static_cast<std::size_t>(begin - line.data()) - from;
        }
    }
    return line.size() - from;
}

std::optional<TextRange> nextName(std::string_view line, std::size_t from) {
    for (std::size_t begin = from; begin < line.size();) {
        const auto size = lettersAt(line, begin);
        if (size == 0) {
            const auto* at = line.data() + begin;
            static_cast<void>(utf8::unchecked::next(at));
            begin = static_cast<std::size_t>(at - line.data());
            continue;
        }
        auto end = begin + size;
        while (end < line.size() && line[end] == '.') {
            const auto more = lettersAt(line, end + 1);
            if (more == 0) {
                break;
            }
            end += 1 + more;
        }
        return TextRange{begin, end};
    }
    return std::nullopt;
}

struct FreeExpression {
    void operator()(regex_t* expression) const {
        regfree(expression);
        delete expression; // NOLINT(cppcoreguidelines-owning-memory)
    }
};

[[noreturn]] void refusePattern(const std::string& why) {
    throw std::runtime_error("namePattern: " + why);
}

// The larger number of a repeat "{m,n}" or "{m}", which is what follows the brace; at least 1.
unsigned countIn(std::string_view repeat) {
    unsigned count = 1;
    for (const auto& number : standalone::split(repeat.substr(0, repeat.find('}')), ',')) {
        unsigned parsed = 0;
        std::from_chars(number.data(), number.data() + number.size(), parsed);
        count = std::max(count, parsed);
    }
    return count;
}

// Refuses what can keep the system busy for ever: it tries every way to match a back reference, and writes a repeated
// part out before it matches, "+" as two copies, so that repeats of repeats multiply.
void requireBounded(const std::string& expression) {
    constexpr unsigned most = 256;
    unsigned copies = 1;
    for (std::size_t i = 0; i < expression.size(); ++i) {
        const char c = expression[i];
        if (c == '\\') {
            const char next = expression[++i]; // a NUL at the end
            if ('1' <= next && next <= '9') {
                refusePattern("a back reference is not supported");
            }
        }
        copies *= c == '+' ? 2 : c == '{' ? countIn(std::string_view(expression).substr(i + 1)) : 1;
        if (copies > most) {
            refusePattern(fmt::format("repeats may multiply to {}; each {{m,n}} counts as n, each + as 2", most));
        }
    }
}

std::shared_ptr<const regex_t> compiled(const std::string& text) {
    constexpr std::size_t longest = 1000;
    if (text.empty() || text.size() > longest || text.find('\0') != std::string::npos) {
        refusePattern(fmt::format("a regular expression of 1 to {} bytes is expected", longest));
    }
    requireBounded(text);
    auto expression = std::make_unique<regex_t>();
    if (const int error = regcomp(expression.get(), text.c_str(), REG_EXTENDED); error != 0) {
        std::array<char, 200> words{};
        regerror(error, expression.get(), words.data(), words.size());
        refusePattern(words.data());
    }
    return {expression.release(), FreeExpression()};
}

std::optional<TextRange> nextMatch(const regex_t& expression, std::string_view line, std::size_t from) {
    while (from < line.size()) {
        regmatch_t match{static_cast<regoff_t>(from), static_cast<regoff_t>(line.size())};
        const int flags = REG_STARTEND | (from == 0 ? 0 : REG_NOTBOL);
        if (regexec(&expression, line.data(), 1, &match, flags) != 0) {
            return std::nullopt;
        }
        if (match.rm_eo > match.rm_so) {
            return TextRange{static_cast<std::size_t>(match.rm_so), static_cast<std::size_t>(match.rm_eo)};
        }
        from = static_cast<std::size_t>(match.rm_eo) + 1;
    }
    return std::nullopt;
}

} // namespace

NamePattern::NamePattern() : next_(nextName) {}

NamePattern::NamePattern(const std::string& expression)
    : next_([compiled = compiled(expression)](std::string_view line, std::size_t from) {
          return nextMatch(*compiled, line, from);
      }) {}

std::optional<TextRange> NamePattern::find(std::string_view line, std::size_t offset) const {
    const auto begin = endOfCharacter(line, offset - std::min(offset, reach));
    const auto near = line.substr(0, endOfCharacter(line, std::min(offset + reach, line.size())));
    std::optional<TextRange> before;
    for (auto name = next_(near, begin); name && name->begin <= offset; name = next_(near, name->end)) {
        if (offset < name->end) {
            return name;
        }
        if (offset == name->end) {
            before = name;
        }
    }
    return before;
}

TextRange NamePattern::findBeginning(std::string_view line, std::size_t offset) const {
    const auto before = line.substr(0, offset);
    const std::size_t dot = before.ends_with('.') ? 1 : 0;
    const auto name = find(before.substr(0, before.size() - dot), before.size() - dot);
    return {name ? name->begin : offset, offset};
}

bool NamePattern::matches(std::string_view text) const {
    return next_(text, 0) == TextRange{0, text.size()};
}

} // namespace tessgen::cli

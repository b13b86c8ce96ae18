#include "cli/output/Escape.hpp"

#include <fmt/format.h>
#include <utf8.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <string>
#include <string_view>
#include <system_error>
#include <utility>

namespace tessgen::cli {

namespace {

using Range = CodeRange;

// Control characters, every space but the plain one, line and paragraph separators, directional marks, and Unicode's
// default-ignorable characters (fillers, joiners, selectors, tags). In ascending order.
constexpr std::array invisible{
    Range{0x0000, 0x001F}, Range{0x007F, 0x00A0},   Range{0x00AD, 0x00AD},   Range{0x034F, 0x034F},
    Range{0x061C, 0x061C}, Range{0x115F, 0x1160},   Range{0x1680, 0x1680},   Range{0x17B4, 0x17B5},
    Range{0x180B, 0x180F}, Range{0x2000, 0x200F},   Range{0x2028, 0x202F},   Range{0x205F, 0x206F},
    Range{0x2800, 0x2800}, Range{0x3000, 0x3000},   Range{0x3164, 0x3164},   Range{0xFDD0, 0xFDEF},
    Range{0xFE00, 0xFE0F}, Range{0xFEFF, 0xFEFF},   Range{0xFFA0, 0xFFA0},   Range{0xFFF0, 0xFFFB},
    Range{0xFFFE, 0xFFFF}, Range{0x1BCA0, 0x1BCA3}, Range{0x1D173, 0x1D17A}, Range{0xE0000, 0xE0FFF},
};

bool isInvisible(std::uint32_t character) {
    return isIn(invisible, character);
}

// $'...', in which \xNN is a byte.
std::string quotedWithCodes(std::string_view text) {
    std::string word = "$'";
    for (const char c : text) {
        if (c == '\\' || c == '\'') {
            word.append(1, '\\').append(1, c);
        } else if (c >= ' ' && c <= '~') {
            word += c;
        } else {
            word += fmt::format("\\x{:02X}", static_cast<unsigned char>(c));
        }
    }
    return word + "'";
}

struct Unescaped {
    std::optional<std::u16string> units; // none for a text that nothing is escaped as
    std::size_t length = 0;              // of the text that stands for them
};

// The character that a text which begins with a backslash begins with.
Unescaped unescapedCharacter(std::string_view text) {
    constexpr std::string_view beginning = "\\u{";
    constexpr std::uint32_t beyondPlane = 0x10000; // and then a pair of surrogates
    constexpr std::uint32_t last = 0x10FFFF;
    if (text.starts_with("\\\\")) {
        return {u"\\", 2};
    }
    const auto end = text.find('}');
    if (!text.starts_with(beginning) || end == std::string_view::npos) {
        return {};
    }
    std::uint32_t code = 0;
    const auto [stop, error] = std::from_chars(text.data() + beginning.size(), text.data() + end, code, 16);
    if (error != std::errc() || stop != text.data() + end || code > last) {
        return {};
    }
    if (code < beyondPlane) {
        return {std::u16string(1, static_cast<char16_t>(code)), end + 1};
    }
    return {
        std::u16string{static_cast<char16_t>(0xD7C0 + (code >> 10U)), static_cast<char16_t>(0xDC00 + (code & 0x3FFU))},
        end + 1};
}

} // namespace

bool isIn(std::span<const CodeRange> ranges, std::uint32_t character) {
    const auto range = std::lower_bound(ranges.begin(), ranges.end(), character,
                                        [](CodeRange r, std::uint32_t c) { return r.last < c; });
    return range != ranges.end() && range->first <= character;
}

std::string escaped(std::string_view text) {
    const auto isPlain = [](char c) { return c > ' ' && c <= '~' && c != '\\'; };
    if (std::all_of(text.begin(), text.end(), isPlain)) { // like nearly every name and path
        return std::string(text);
    }
    std::string out;
    out.reserve(text.size());
    const auto* const end = text.data() + text.size();
    for (const auto* at = text.data(); at != end;) {
        const auto* const invalid = utf8::find_invalid(at, end);
        while (at != invalid) {
            const auto* const begin = at;
            const auto character = utf8::unchecked::next(at);
            const bool outerSpace = character == U' ' && (begin == text.data() || at == end);
            if (character == U'\\') {
                out.append("\\\\");
            } else if (outerSpace || isInvisible(character)) {
                out += fmt::format("\\u{{{:X}}}", character);
            } else {
                out.append(begin, at);
            }
        }
        if (at != end) {
            out += fmt::format("\\x{{{:X}}}", static_cast<unsigned char>(*at++));
        }
    }
    return out;
}

std::string escapedText(const std::u16string& text) {
    if (const auto whole = standalone::toUTF8(text)) {
        return escaped(*whole);
    }
    std::string out;
    for (std::size_t begin = 0, length = 0; begin < text.size(); begin += length) {
        const auto pair = standalone::toUTF8(std::u16string_view(text).substr(begin, 2));
        const bool isPair = pair && 0xD800 <= text[begin] && text[begin] < 0xDC00;
        length = isPair ? 2 : 1;
        const auto character = isPair ? pair : standalone::toUTF8(std::u16string_view(text).substr(begin, 1));
        out += character ? escaped(*character) : fmt::format("\\u{{{:X}}}", static_cast<std::uint32_t>(text[begin]));
    }
    return out;
}

std::optional<std::u16string> unescapedText(std::string_view escaped) {
    std::u16string text;
    while (!escaped.empty()) {
        const auto plain = std::min(escaped.find('\\'), escaped.size());
        const auto found =
            plain > 0 ? Unescaped{standalone::toUTF16(escaped.substr(0, plain)), plain} : unescapedCharacter(escaped);
        if (!found.units) {
            return std::nullopt;
        }
        text += *found.units;
        escaped.remove_prefix(found.length);
    }
    return standalone::toUTF8(text) ? std::optional(std::move(text)) : std::nullopt;
}

std::string forJSON(std::string_view text) {
    return standalone::isUTF8(text) ? std::string(text) : escaped(text);
}

std::string escapedJSON(std::string_view json) {
    std::string out;
    out.reserve(json.size());
    const auto* const end = json.data() + json.size();
    for (const auto* at = json.data(); at != end;) {
        const auto* const begin = at;
        const auto character = utf8::unchecked::next(at);
        if (character < U' ' || !isInvisible(character)) { // JSON has control characters only as its own line ends
            out.append(begin, at);
            continue;
        }
        std::u16string units;
        utf8::unchecked::utf8to16(begin, at, std::back_inserter(units));
        for (const char16_t unit : units) {
            out += fmt::format("\\u{:04x}", static_cast<std::uint32_t>(unit));
        }
    }
    return out;
}

std::string shellWord(std::string_view text) {
    const auto isPlain = [](char c) {
        return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9')
               || std::string_view("/._-+@").find(c) != std::string_view::npos;
    };
    if (std::all_of(text.begin(), text.end(), isPlain)) {
        return std::string(text);
    }
    std::string word = "'";
    for (const char c : text) {
        word += c == '\'' ? R"('\'')" : std::string(1, c);
    }
    word += '\'';
    return escaped(word) == word ? word : quotedWithCodes(text);
}

std::u16string parseName(std::string_view word) {
    if (word.empty()) {
        throw std::runtime_error("a name cannot be empty");
    }
    if (word.find('\0') != std::string_view::npos) {
        throw std::runtime_error("a name cannot contain a NUL");
    }
    auto name = standalone::toUTF16(word);
    if (!name) {
        throw std::runtime_error("the name is not UTF-8");
    }
    return *std::move(name);
}

std::string inUTF8(const std::u16string& text) {
    auto converted = standalone::toUTF8(text);
    if (!converted) {
        throw std::runtime_error("the answer contains text that is not UTF-16");
    }
    return *std::move(converted);
}

} // namespace tessgen::cli

#include "standalone/text/Text.hpp"

#include <algorithm>
#include <cstddef>
#include <numeric>
#include <type_traits>
#include <utf8.h>
#include <utility>

namespace tessgen::standalone {

namespace {

// Nearly every name and path is ASCII, whose conversion is a copy.
template <typename Unit>
bool isASCII(std::basic_string_view<Unit> text) {
    unsigned all = 0;
    for (const Unit unit : text) {
        all |= static_cast<std::make_unsigned_t<Unit>>(unit);
    }
    return all < 0x80;
}

} // namespace

bool isUTF8(std::string_view text) {
    return isASCII(text) || utf8::is_valid(text.begin(), text.end());
}

bool isBeforeInUTF16(std::string_view a, std::string_view b) {
    // Ordered as bytes, except for lead bytes: code points from U+10000 on (0xF0 to 0xF4) begin with a surrogate, which
    // sorts before U+E000 (0xEE).
    const auto rank = [](char byte) {
        const auto number = static_cast<unsigned char>(byte);
        return number >= 0xF0 ? number - 2 : number >= 0xEE ? number + 0x10 : number;
    };
    return std::lexicographical_compare(a.begin(), a.end(), b.begin(), b.end(),
                                        [&](char x, char y) { return rank(x) < rank(y); });
}

std::optional<std::u16string> toUTF16(std::string_view text) {
    if (isASCII(text)) {
        return std::u16string(text.begin(), text.end());
    }
    if (!isUTF8(text)) {
        return std::nullopt;
    }
    std::u16string result(text.size(), u'\0'); // a code unit needs at least one byte
    const char16_t* end = utf8::unchecked::utf8to16(text.begin(), text.end(), result.data());
    result.resize(static_cast<std::size_t>(end - result.data()));
    return result;
}

std::optional<std::string> toUTF8(std::u16string_view text) {
    if (isASCII(text)) {
        return std::string(text.begin(), text.end());
    }
    std::string result(text.size() * 3, '\0'); // no code unit needs more bytes
    try {
        const char* end = utf8::utf16to8(text.begin(), text.end(), result.data());
        result.resize(static_cast<std::size_t>(end - result.data()));
    } catch (const utf8::exception&) {
        return std::nullopt;
    }
    return result;
}

std::vector<std::string> split(std::string_view text, char separator) {
    std::vector<std::string> parts;
    for (std::size_t begin = 0; begin <= text.size();) {
        const std::size_t end = std::min(text.find(separator, begin), text.size());
        parts.emplace_back(text.substr(begin, end - begin));
        begin = end + 1;
    }
    return parts;
}

std::string inLowerCase(std::string_view text) {
    std::string lower(text);
    std::transform(lower.begin(), lower.end(), lower.begin(),
                   [](char c) { return 'A' <= c && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; });
    return lower;
}

std::size_t editDistance(std::string_view from, std::string_view to, std::size_t most) {
    std::vector<std::size_t> row(to.size() + 1);
    std::iota(row.begin(), row.end(), std::size_t{0});
    for (std::size_t i = 0; i < from.size(); ++i) {
        std::size_t diagonal = std::exchange(row[0], i + 1);
        for (std::size_t j = 0; j < to.size(); ++j) {
            const std::size_t replaced = diagonal + (from[i] == to[j] ? 0 : 1);
            diagonal = row[j + 1];
            row[j + 1] = std::min({replaced, row[j] + 1, diagonal + 1});
        }
        if (const auto least = *std::min_element(row.begin(), row.end()); least > most) {
            return least;
        }
    }
    return row.back();
}

std::string counted(std::uint64_t count, std::string_view one) {
    return std::to_string(count).append(" ").append(one).append(count == 1 ? "" : "s");
}

} // namespace tessgen::standalone

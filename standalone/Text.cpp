#include "standalone/Text.hpp"

#include <algorithm>
#include <cstddef>
#include <numeric>
#include <utf8.h>
#include <utility>

namespace tessgen::standalone {

std::optional<std::u16string> toUTF16(std::string_view text) {
    if (!utf8::is_valid(text.begin(), text.end())) {
        return std::nullopt;
    }
    std::u16string result(text.size(), u'\0'); // a code unit needs at least one byte
    const char16_t* end = utf8::unchecked::utf8to16(text.begin(), text.end(), result.data());
    result.resize(static_cast<std::size_t>(end - result.data()));
    return result;
}

std::optional<std::string> toUTF8(std::u16string_view text) {
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

std::size_t distance(std::string_view from, std::string_view to, std::size_t most) {
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

} // namespace tessgen::standalone

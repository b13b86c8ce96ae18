// Converts between UTF-8 (disks, files, terminals) and UTF-16 (the host's services), and other helpers on text.
//
// Threads: any.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tessgen::standalone {

// False for surrogates, overlong forms and cut-off sequences.
[[nodiscard]] bool isUTF8(std::string_view text);

// Whether `a` sorts before `b` by their UTF-16 code units. Both are UTF-8.
[[nodiscard]] bool isBeforeInUTF16(std::string_view a, std::string_view b);

// Nothing when `text` is not UTF-8.
[[nodiscard]] std::optional<std::u16string> toUTF16(std::string_view text);

// Nothing when `text` holds a lone surrogate.
[[nodiscard]] std::optional<std::string> toUTF8(std::u16string_view text);

// The parts between separators, empty ones included; at least one.
[[nodiscard]] std::vector<std::string> split(std::string_view text, char separator);

// With the letters A to Z in lower case.
[[nodiscard]] std::string inLowerCase(std::string_view text);

// Levenshtein distance in bytes; when it exceeds `most`, any number greater than `most`.
[[nodiscard]] std::size_t editDistance(std::string_view from, std::string_view to,
                                       std::size_t most = std::string_view::npos);

// "1 record", "2 records".
[[nodiscard]] std::string counted(std::uint64_t count, std::string_view one);

} // namespace tessgen::standalone

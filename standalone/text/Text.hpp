// Text between the two encodings that meet here: UTF-8 on disks, in files and on terminals, UTF-16 in the services.
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

// Not so when `text` holds surrogates, overlong forms or cut-off sequences.
bool isUTF8(std::string_view text);

// Whether `a` comes before `b` in the order of their UTF-16 code units. Both are UTF-8.
bool isBeforeInUTF16(std::string_view a, std::string_view b);

// Nothing when `text` is not UTF-8.
std::optional<std::u16string> toUTF16(std::string_view text);

// Nothing when `text` holds a lone surrogate.
std::optional<std::string> toUTF8(std::u16string_view text);

// The parts between separators, empty ones included; at least one.
std::vector<std::string> split(std::string_view text, char separator);

// How many bytes must be changed, added or taken out to get from one text to the other; when that is more than `most`,
// some number that is more.
std::size_t editDistance(std::string_view from, std::string_view to, std::size_t most = std::string_view::npos);

// "1 record", "2 records".
std::string counted(std::uint64_t count, std::string_view one);

} // namespace tessgen::standalone

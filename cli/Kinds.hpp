// The kinds of candidates, as programs and as people call them.
#pragma once

#include "tessgen/kelwhich/WhichResult.hpp"

#include <cstddef>
#include <optional>
#include <string_view>

namespace tessgen::cli {

// The name of a kind, as in the library; nothing when there is no such kind.
std::string_view kindName(kelwhich::WhichResultType type);
std::optional<kelwhich::WhichResultType> kindNamed(std::string_view name);

// What people call the kind.
std::string_view kindWords(kelwhich::WhichResultType type);
inline constexpr std::size_t widestKindWords = std::string_view("host built-in method").size();

} // namespace tessgen::cli

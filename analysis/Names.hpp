// The names of kinds and keys in every output.
//
// Threads: any.
#pragma once

#include "tessgen/kelwhich/Explanation.hpp"

#include <optional>
#include <string_view>

namespace tessgen::analysis {

// As in the library; no value for an unknown name.
[[nodiscard]] std::string_view kindName(kelwhich::WhichResultType kind);
[[nodiscard]] std::optional<kelwhich::WhichResultType> kindNamed(std::string_view name);

[[nodiscard]] std::string_view keyName(kelwhich::Explanation::Key key);
[[nodiscard]] std::optional<kelwhich::Explanation::Key> keyNamed(std::string_view name);

} // namespace tessgen::analysis

#include "analysis/Finding.hpp"

#include <array>
#include <cstddef>

namespace tessgen::analysis {

std::string_view levelName(Level level) {
    constexpr std::array<std::string_view, 3> names = {"note", "warning", "error"};
    return names.at(static_cast<std::size_t>(level));
}

} // namespace tessgen::analysis

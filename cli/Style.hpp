// What is sent to a terminal around a piece of text; all empty when there are no colours.
#pragma once

#include <string_view>

namespace tessgen::cli {

struct Style {
    std::string_view name;
    std::string_view first;
    std::string_view aside;
    std::string_view end;
};

constexpr Style styleOf(bool coloured) {
    return coloured ? Style{"\x1B[1m", "\x1B[32m", "\x1B[2m", "\x1B[0m"} : Style{};
}

} // namespace tessgen::cli

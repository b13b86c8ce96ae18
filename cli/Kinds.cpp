#include "cli/Kinds.hpp"

#include <algorithm>
#include <array>

namespace tessgen::cli {

namespace {

struct Kind {
    std::string_view name;
    std::string_view words;
};

// In the order of the types' values.
constexpr std::array kinds{
    Kind{"KELPath", "KEL path file"},
    Kind{"KELBuiltin", "KEL built-in"},
    Kind{"ORVAKPath", "host file"},
    Kind{"ORVAKBuiltin", "host built-in"},
    Kind{"ORVAKBuiltinMethod", "host built-in method"},
};

const Kind& kindOf(kelwhich::WhichResultType type) {
    return kinds.at(static_cast<std::size_t>(type));
}

} // namespace

std::string_view kindName(kelwhich::WhichResultType type) {
    return kindOf(type).name;
}

std::string_view kindWords(kelwhich::WhichResultType type) {
    return kindOf(type).words;
}

std::optional<kelwhich::WhichResultType> kindNamed(std::string_view name) {
    const auto* const kind = std::find_if(kinds.begin(), kinds.end(), [name](const Kind& k) { return k.name == name; });
    return kind == kinds.end() ? std::nullopt
                               : std::optional(static_cast<kelwhich::WhichResultType>(kind - kinds.begin()));
}

} // namespace tessgen::cli

#include "analysis/Names.hpp"

#include <algorithm>
#include <array>
#include <cstddef>

namespace tessgen::analysis {

namespace {

constexpr std::array<std::string_view, 5> kinds = {"KELPath", "KELBuiltin", "ORVAKPath", "ORVAKBuiltin",
                                                   "ORVAKBuiltinMethod"};
constexpr std::array<std::string_view, kelwhich::Explanation::keys.size()> keys = {"direct",     "user", "supported",
                                                                                   "sourceFile", "kind", "gathered"};

template <typename Value, std::size_t count>
std::optional<Value> named(const std::array<std::string_view, count>& names, std::string_view name) {
    const auto found = std::find(names.begin(), names.end(), name);
    return found == names.end() ? std::nullopt : std::optional(static_cast<Value>(found - names.begin()));
}

} // namespace

std::string_view kindName(kelwhich::WhichResultType kind) {
    return kinds.at(static_cast<std::size_t>(kind));
}

std::optional<kelwhich::WhichResultType> kindNamed(std::string_view name) {
    return named<kelwhich::WhichResultType>(kinds, name);
}

std::string_view keyName(kelwhich::Explanation::Key key) {
    return keys.at(static_cast<std::size_t>(key));
}

std::optional<kelwhich::Explanation::Key> keyNamed(std::string_view name) {
    return named<kelwhich::Explanation::Key>(keys, name);
}

} // namespace tessgen::analysis

// Places as the Language Server Protocol writes them.
//
// Threads: any.
#pragma once

#include "cli/lsp/Positions.hpp"
#include "cli/output/FileURI.hpp"

#include <nlohmann/json.hpp>

#include <string>

namespace tessgen::cli {

inline nlohmann::ordered_json rangeOf(const Position& begin, const Position& end) {
    return {{"start", {{"line", begin.line}, {"character", begin.character}}},
            {"end", {{"line", end.line}, {"character", end.character}}}};
}

// The beginning of a file: a file is a definition as a whole.
inline nlohmann::ordered_json locationOf(const std::string& path) {
    return {{"uri", fileURI(path)}, {"range", rangeOf({}, {})}};
}

} // namespace tessgen::cli

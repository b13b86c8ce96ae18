// Places as the Language Server Protocol writes them.
//
// Threads: any.
#pragma once

#include "cli/installation/ResolverSession.hpp"
#include "cli/lsp/Positions.hpp"

#include <nlohmann/json.hpp>

#include <string>

namespace tessgen::cli {

nlohmann::ordered_json rangeOf(const Position& begin, const Position& end);

// The beginning of a file: a file is a definition as a whole.
nlohmann::ordered_json locationOf(const std::string& path);

// Of the candidate's file; null unless it has one that exists.
// Errors: std::runtime_error when its path is not UTF-16.
nlohmann::ordered_json locationOf(const kelwhich::Explanation::Candidate& candidate, const ResolverSession& resolver);

} // namespace tessgen::cli

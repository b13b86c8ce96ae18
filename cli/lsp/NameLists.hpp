// The methods that answer with many names of the installation.
//
// A list ends when it is long enough or took too long; it is then marked incomplete, where it can be.
// Threads: one.
#pragma once

#include "cli/lsp/Methods.hpp"

namespace tessgen::cli {

// The names that begin as the text before the position does, each with the kind of its preferred candidate.
nlohmann::ordered_json completion(const Asked& asked);

// The names that contain the query, in any case of letters, and whose preferred candidate is a file that exists.
nlohmann::ordered_json workspaceSymbols(const Asked& asked);

} // namespace tessgen::cli

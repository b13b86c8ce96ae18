// Every plain and dotted name of an installation.
//
// Threads: any.
#pragma once

#include "standalone/services/SessionState.hpp"

#include <string>
#include <vector>

namespace tessgen::standalone {

// The names of the source files in the session's snapshot or watched view, of the built-ins and of the support records,
// in UTF-8; sorted by their bytes, each once. Some have no candidate. Errors: std::runtime_error for a damaged store.
[[nodiscard]] std::vector<std::string> knownNames(const SessionState& session);

} // namespace tessgen::standalone

// Explains why the search does not find a file under a name.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace tessgen::standalone {

struct SessionState;

// The reasons why `name` does not lead to the file at `path` (absolute, UTF-8), as clauses of a sentence; empty when it
// does.
// Errors: those of the file tree.
[[nodiscard]] std::vector<std::string> whyNotFound(const std::string& path, std::u16string_view name,
                                                   const SessionState& session);

} // namespace tessgen::standalone

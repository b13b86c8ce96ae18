// Why the search does not find a file under a name.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace tessgen::standalone {

struct SessionState;

// What keeps the search from finding the file at `path` (absolute, UTF-8) under `name`, in plain words; empty when
// nothing does.
// Errors: those of the file tree.
std::vector<std::string> whyNotFound(const std::string& path, std::u16string_view name, const SessionState& session);

} // namespace tessgen::standalone

// Folders that an installation has forgotten.
#pragma once

#include "standalone/files/FileTree.hpp"
#include "standalone/manifest/Installation.hpp"

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace tessgen::standalone {

// The folders below the root that hold source files, and that are neither on the search path nor KEL folders, in order.
// Left out: the support packages, whose files stand in for others; hidden folders; what cannot be read; links to
// folders. `realPath` is of the same disk as `files`.
// Errors: std::system_error when the root itself cannot be read.
[[nodiscard]] std::vector<std::string>
unsearchedFolders(const Installation& installation, const FileTree& files,
                  const std::function<std::optional<std::string>(const std::string& path)>& realPath);

} // namespace tessgen::standalone

// Which installation the program speaks of.
#pragma once

#include "cli/CommandLine.hpp"

#include <string>

namespace tessgen::cli {

// The manifest, or its folder: what the request names, else what KELWHICH_INSTALLATION names, else the nearest
// `installation.json` in the working folder or above. Whether it can be read is not looked at.
// Errors: std::runtime_error when there is none, std::filesystem::filesystem_error when the disk cannot tell.
std::string findManifest(const Request& request);

} // namespace tessgen::cli

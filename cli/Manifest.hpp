// Which installation the program speaks of.
#pragma once

#include "cli/CommandLine.hpp"

#include <string>

namespace tessgen::cli {

// The manifest, or its folder: what the request names, else what KELWHICH_INSTALLATION names, else the nearest
// `installation.json` in the working folder or above. Whether the manifest can be read is not looked at.
// Errors: std::runtime_error when there is none, or when a folder on the way up cannot be looked into: the manifest of
// a folder further up may be of another installation.
std::string findManifest(const Request& request);

} // namespace tessgen::cli

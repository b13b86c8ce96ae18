// Which installation the program speaks of.
#pragma once

#include "cli/CommandLine.hpp"

#include <string>

namespace tessgen::cli {

// The manifest, or its folder: what the request names, else what KELWHICH_INSTALLATION names, else the nearest
// `installation.json` in the working folder or above; a folder that cannot be looked into is passed over. Whether the
// manifest can be read is not looked at.
// Errors: std::runtime_error when there is none.
std::string findManifest(const Request& request);

// The store that the request names, else that of the installation.
// Errors: std::runtime_error when the installation has none.
std::string findStore(const Request& request);

} // namespace tessgen::cli

// Whether a store is, byte for byte, what a build wrote.
#pragma once

#include "standalone/database/DatabaseCheck.hpp"

#include <string>

namespace tessgen::standalone {

// Checks every entry, the order of each record's names, and every slot of the hash tables.
// Memory: that of the hash tables.
// Errors: those of opening a store; damage inside is not an error but a finding.
[[nodiscard]] DatabaseCheck checkSupportStore(const std::string& file);

} // namespace tessgen::standalone

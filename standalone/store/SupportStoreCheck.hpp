// Whether a whole store is as a build wrote it.
#pragma once

#include "standalone/database/DatabaseCheck.hpp"

#include <string>

namespace tessgen::standalone {

// Goes through every entry, the order of each record's names, and every place of the hash tables.
// Memory: that of the hash tables.
// Errors: what is an error when a store is opened; damage inside is no error but a finding.
DatabaseCheck checkSupportStore(const std::string& file);

} // namespace tessgen::standalone

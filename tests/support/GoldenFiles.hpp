// Checked-in files of each format.
#pragma once

#include "standalone/database/DatabaseFormat.hpp"

#include <algorithm>
#include <string>

namespace tessgen::test {

// That of the present version.
inline std::string goldenFile(const standalone::DatabaseKind& kind) {
    std::string name(kind.name);
    std::replace(name.begin(), name.end(), ' ', '-');
    return KELWHICH_SOURCE_DIR "/tests/standalone/golden/" + name + "-" + std::to_string(kind.version) + ".cdb";
}

} // namespace tessgen::test

// Verifies a search index, and finds out how many of its listings are still current.
#pragma once

#include "standalone/database/DatabaseCheck.hpp"
#include "standalone/files/FileTree.hpp"
#include "standalone/index/SearchIndex.hpp"
#include "standalone/manifest/Installation.hpp"

#include <cstdint>
#include <string>
#include <vector>

namespace tessgen::standalone {

// Checks every entry and every slot of the hash tables.
// Memory: that of the hash tables.
// Errors: those of opening an index. Damage inside is a finding.
[[nodiscard]] DatabaseCheck checkSearchIndex(const std::string& file);

struct IndexUse {
    std::uint64_t folders = 0;        // searched ones that can be read
    std::vector<std::string> changed; // those among them whose listing is stale or missing in the index
};

// How many of the folders that a SnapshotSearch lists the index serves. The folder of the index itself is not counted.
// Errors: a damaged entry.
[[nodiscard]] IndexUse useOf(const SearchIndex& index, const Installation& installation);

} // namespace tessgen::standalone

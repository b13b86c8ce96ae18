// Whether a search index is as a build wrote it, and how much of it still holds.
#pragma once

#include "standalone/database/DatabaseCheck.hpp"
#include "standalone/files/FileTree.hpp"
#include "standalone/index/SearchIndex.hpp"
#include "standalone/manifest/Installation.hpp"

#include <cstdint>
#include <string>
#include <vector>

namespace tessgen::standalone {

// Goes through every entry and every place of the hash tables.
// Memory: that of the hash tables.
// Errors: what is an error when an index is opened; damage inside is no error but a finding.
DatabaseCheck checkSearchIndex(const std::string& file);

struct IndexUse {
    std::uint64_t folders = 0;        // that are searched and can be read
    std::vector<std::string> changed; // those of them that changed, or were not there, when the index was built
};

// How much of what a SnapshotSearch lists is answered by the index; the folder that the index lies in is not counted.
// Errors: a damaged entry.
IndexUse useOf(const SearchIndex& index, const Installation& installation);

} // namespace tessgen::standalone

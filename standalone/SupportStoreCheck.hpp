// Whether a whole store is as a build wrote it: every byte counts, also those that no look-up meets.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace tessgen::standalone {

struct StoreCheck {
    std::uint64_t records = 0;         // that are whole
    std::uint64_t damages = 0;         // 0: the store is whole
    std::vector<std::string> findings; // one line for each of the first ten, in the order of the file
};

// Goes through every entry, the order of each record's names, and every place of the hash tables.
// Memory: that of the hash tables.
// Errors: what is an error when a store is opened; damage inside is no error but a finding.
StoreCheck checkSupportStore(const std::string& file);

} // namespace tessgen::standalone

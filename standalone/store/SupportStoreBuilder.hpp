// Builds a support store from JSON Lines, one record a line.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>

namespace tessgen::standalone {

// What a build has read so far.
struct StoreBuildProgress {
    std::uint64_t records = 0;
    std::uint64_t bytes = 0;
    std::optional<std::uint64_t> size; // of the records file in bytes, when it is a regular one
};

// Reads `records` (a file of JSON Lines, or "-" for standard input) in one pass and replaces the file `output` by the
// store for the installation `root` (UTF-8). The replacement is atomic: after an error, `output` is as it was, and of
// simultaneous builds the last to end wins. Calls `report`, if set, at each line.
// Memory: up to 60 bytes a record and 8 more for each of its names, however long the records are.
// Errors: std::runtime_error with one line: a malformed line (file, number and what was expected); a file that cannot
// be read or written; a store larger than the 4 GiB of its format.
StoreBuildProgress buildSupportStore(const std::string& records, const std::string& output, const std::string& root,
                                     const std::function<void(const StoreBuildProgress&)>& report = nullptr);

} // namespace tessgen::standalone

// Builds a support store from JSON Lines, one record a line.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>

namespace tessgen::standalone {

// What a build has read so far; at its end, all.
struct StoreBuildProgress {
    std::uint64_t records = 0;
    std::uint64_t bytes = 0;
    std::optional<std::uint64_t> size; // of all records in bytes, when they are in a regular file
};

// Reads `records` (a file of JSON Lines, or "-" for standard input) in one pass and writes the store for the
// installation `root` (UTF-8) to a new file beside `output`, which then takes the place of `output` in one rename: a
// reader sees the old store or the new one. When anything fails, `output` is as it was and the new file is gone. Two
// builds of one store at the same time end with the one or the other. Calls `report`, if there is one, at each line.
// Memory: up to 60 bytes a record and 8 more for each of its names, however long the records are.
// Errors: std::runtime_error with one line: the file, the line's number and what was expected; a file that cannot be
// read or written; a store that would outgrow the 4 GiB of its format.
StoreBuildProgress buildSupportStore(const std::string& records, const std::string& output, const std::string& root,
                                     const std::function<void(const StoreBuildProgress&)>& report = nullptr);

} // namespace tessgen::standalone

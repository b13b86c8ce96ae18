// Writes a constant database, one entry after the other.
//
// Threads: one. Memory: that of the hash tables, however large the entries are.
#pragma once

#include "standalone/database/DatabaseFormat.hpp"
#include "standalone/database/DatabaseTables.hpp"
#include "standalone/files/AtomicFile.hpp"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace tessgen::standalone {

class DatabaseWriter {
public:
    // Writes at most `sizeLimit` bytes.
    // Lifetime: `file` outlives the writer.
    explicit DatabaseWriter(AtomicFile& file, std::uint64_t sizeLimit = databaseSizeLimit);

    // Writes an entry, its checksum included.
    // Errors: std::runtime_error, one line: the file would be too large, or cannot be written.
    EntryReference add(const std::string& key, std::string value);
    // Whether an entry with that key was added. Slow: reads entries back from the file.
    [[nodiscard]] bool holds(const std::string& key);
    // Writes the entry that describes the file, then the hash tables and the pointers to them.
    // Errors: as `add`.
    void finish(const DatabaseKind& kind, std::uint32_t records, const std::u16string& root,
                const std::optional<std::u16string>& commonPrefix = std::nullopt);

private:
    AtomicFile* file_;
    DatabaseTables tables_;
    std::uint64_t sizeLimit_;
    std::uint64_t size_ = databaseHeaderSize; // of the file, with the tables for the entries so far
    std::uint64_t position_ = databaseHeaderSize;
};

} // namespace tessgen::standalone

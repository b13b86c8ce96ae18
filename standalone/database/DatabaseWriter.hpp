// Writes a constant database of the host's own, one entry after the other.
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
    // Writes to `file`, which must outlive the writer, no more than `sizeLimit` bytes.
    explicit DatabaseWriter(AtomicFile& file, std::uint64_t sizeLimit = databaseSizeLimit);

    // Adds the checksum to the value.
    // Errors: std::runtime_error, one line: the file would be too large, or cannot be written.
    EntryReference add(const std::string& key, std::string value);
    // Whether an entry with that key was added. Slow: looks through the entries that were written.
    bool holds(const std::string& key);
    // Writes what follows the entries, the one about the file first.
    // Errors: as `add`.
    void finish(const DatabaseKind& kind, std::uint32_t records, const std::u16string& root,
                const std::optional<std::u16string>& beginning = std::nullopt);

private:
    AtomicFile* file_;
    DatabaseTables tables_;
    std::uint64_t sizeLimit_;
    std::uint64_t size_ = databaseHeaderSize; // of the file so far, with the tables of its entries
    std::uint64_t position_ = databaseHeaderSize;
};

} // namespace tessgen::standalone

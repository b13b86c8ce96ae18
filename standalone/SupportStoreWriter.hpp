// Writes a support store's entries, one record after the other.
//
// Threads: one. Memory: that of the hash tables, however large the records are.
#pragma once

#include "standalone/NewFile.hpp"
#include "standalone/SupportStoreFormat.hpp"
#include "standalone/SupportStoreTables.hpp"

#include <cstdint>
#include <string>
#include <string_view>

namespace tessgen::standalone {

class SupportStoreWriter {
public:
    // Writes to `file`, which must outlive the writer, no more than `sizeLimit` bytes.
    explicit SupportStoreWriter(NewFile& file, std::uint64_t sizeLimit = databaseSizeLimit);

    // Errors: std::runtime_error, one line: the store would be too large, or the file cannot be written.
    void add(const SupportRecord& record);
    // Whether a record of that file was added. Slow: looks through the entries that were written.
    bool hasFile(std::u16string_view path);
    // Writes what follows the records, for an installation with that root; returns how many records were added.
    // Errors: as `add`.
    std::uint32_t finish(const std::u16string& root);

private:
    EntryReference addEntry(const std::string& key, std::string value);

    NewFile* file_;
    SupportStoreTables tables_;
    std::uint64_t sizeLimit_;
    std::uint64_t size_ = databaseHeaderSize; // of the file so far, with the tables of its entries
    std::uint64_t position_ = databaseHeaderSize;
    std::uint32_t records_ = 0;
};

} // namespace tessgen::standalone

// The hash tables of a constant database, by which entries are found by their keys.
//
// Threads: one. Memory: 8 bytes an entry; 12 more for each place of the table that is being made.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <string>
#include <string_view>
#include <vector>

namespace tessgen::standalone {

class DatabaseTables {
public:
    static constexpr std::size_t count = 256;

    // Entries are added in the order in which they lie in the file.
    void add(std::string_view key, std::uint32_t position);

    // Where the entries lie that may have that key, in their order.
    std::vector<std::uint32_t> positionsFor(std::string_view key) const;

    // The slots that lead to the tables, as they lie at the file's beginning.
    std::string slots(std::uint32_t entriesEnd) const;
    // A table as it lies in the file; the tables follow each other. Each entry has the first free place from the one
    // that its hash names, as described at https://cr.yp.to/cdb/cdb.txt. Linear in the number of entries, however
    // many have one key.
    std::string table(std::size_t index) const;

private:
    struct Entry {
        std::uint32_t hash;
        std::uint32_t position;
    };

    std::array<std::deque<Entry>, count> entries_;
};

} // namespace tessgen::standalone

// The hash tables of a constant database, by which entries are found by their keys.
//
// Threads: one. Memory: 8 bytes an entry; 12 more for each slot of the table that is being made.
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

    // Adds entries in the order of the file.
    void add(std::string_view key, std::uint32_t position);

    // The positions of the entries whose key has the same hash, in their order.
    [[nodiscard]] std::vector<std::uint32_t> positionsFor(std::string_view key) const;

    // The pointers to the tables, as the file begins with them.
    [[nodiscard]] std::string pointers(std::uint32_t entriesEnd) const;
    // A table, as it lies in the file after those of smaller index. Each entry has the first free slot from the one
    // that its hash names. Linear in the number of entries, however many have the same key.
    [[nodiscard]] std::string table(std::size_t index) const;

private:
    struct Entry {
        std::uint32_t hash;
        std::uint32_t position;
    };

    std::array<std::deque<Entry>, count> entries_;
};

} // namespace tessgen::standalone

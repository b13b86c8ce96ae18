#include "standalone/database/DatabaseTables.hpp"

#include "standalone/database/DatabaseFormat.hpp"

#include <cstring>
#include <numeric>

namespace tessgen::standalone {

namespace {

std::size_t tableOf(std::uint32_t hash) {
    return hash % DatabaseTables::count;
}

// The free slots of a table. Each slot points to itself when it is free, else towards the next free one; every search
// shortens the way (Tarjan, "Efficiency of a good but not linear set union algorithm", 1975).
class FreeSlots {
public:
    explicit FreeSlots(std::size_t size) : next_(size) { std::iota(next_.begin(), next_.end(), 0U); }

    // Takes the first free slot from `slot` on, going round; there must be one.
    std::uint32_t take(std::uint32_t slot) {
        while (next_[slot] != slot) {
            next_[slot] = next_[next_[slot]];
            slot = next_[slot];
        }
        next_[slot] = static_cast<std::uint32_t>((slot + 1) % next_.size());
        return slot;
    }

private:
    std::vector<std::uint32_t> next_;
};

} // namespace

void DatabaseTables::add(std::string_view key, std::uint32_t position) {
    const auto hash = databaseHashOf(key);
    entries_[tableOf(hash)].push_back({hash, position});
}

std::vector<std::uint32_t> DatabaseTables::positionsFor(std::string_view key) const {
    const auto hash = databaseHashOf(key);
    std::vector<std::uint32_t> positions;
    for (const auto& entry : entries_[tableOf(hash)]) {
        if (entry.hash == hash) {
            positions.push_back(entry.position);
        }
    }
    return positions;
}

std::string DatabaseTables::pointers(std::uint32_t entriesEnd) const {
    std::string pointers;
    auto position = entriesEnd;
    for (const auto& entries : entries_) {
        const auto slots = static_cast<std::uint32_t>(entries.size() * 2);
        pointers += encodeNumber(position) + encodeNumber(slots);
        position += slots * databaseSlotSize;
    }
    return pointers;
}

std::string DatabaseTables::table(std::size_t index) const {
    const auto& entries = entries_.at(index);
    const auto slots = entries.size() * 2;
    std::string table(slots * databaseSlotSize, '\0');
    FreeSlots freeSlots(slots);
    for (const auto& entry : entries) {
        const auto slot = freeSlots.take(static_cast<std::uint32_t>((entry.hash / count) % slots));
        static_assert(sizeof entry == databaseSlotSize);
        std::memcpy(table.data() + std::size_t{slot} * databaseSlotSize, &entry, sizeof entry);
    }
    return table;
}

} // namespace tessgen::standalone

#include "standalone/database/DatabaseTables.hpp"

#include "standalone/database/DatabaseFormat.hpp"

#include <cstring>
#include <numeric>

namespace tessgen::standalone {

namespace {

std::size_t tableOf(std::uint32_t hash) {
    return hash % DatabaseTables::count;
}

// Which places of a table are free, asked for one after the other. Each place knows one that is free or nearer to a
// free one, and every question shortens the way (Tarjan, "Efficiency of a good but not linear set union algorithm",
// 1975).
class FreePlaces {
public:
    explicit FreePlaces(std::size_t size) : next_(size) { std::iota(next_.begin(), next_.end(), 0U); }

    // Takes the first free place from `place` on, going round; there is one.
    std::uint32_t take(std::uint32_t place) {
        while (next_[place] != place) {
            next_[place] = next_[next_[place]];
            place = next_[place];
        }
        next_[place] = static_cast<std::uint32_t>((place + 1) % next_.size());
        return place;
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

std::string DatabaseTables::slots(std::uint32_t entriesEnd) const {
    std::string slots;
    auto position = entriesEnd;
    for (const auto& entries : entries_) {
        const auto places = static_cast<std::uint32_t>(entries.size() * 2);
        slots += encodeNumber(position) + encodeNumber(places);
        position += places * databasePlaceSize;
    }
    return slots;
}

std::string DatabaseTables::table(std::size_t index) const {
    const auto& entries = entries_.at(index);
    const auto places = entries.size() * 2;
    std::string table(places * databasePlaceSize, '\0');
    FreePlaces freePlaces(places);
    for (const auto& entry : entries) {
        const auto place = freePlaces.take(static_cast<std::uint32_t>((entry.hash / count) % places));
        static_assert(sizeof entry == databasePlaceSize);
        std::memcpy(table.data() + std::size_t{place} * databasePlaceSize, &entry, sizeof entry);
    }
    return table;
}

} // namespace tessgen::standalone

// Which results repeat an earlier one: the same path and the same type.
#pragma once

#include "host/Paths.hpp"
#include "tessgen/kelwhich/WhichResult.hpp"

#include <cstddef>
#include <functional>
#include <optional>
#include <string_view>
#include <unordered_map>

namespace tessgen::kelwhich {

// Numbers results that differ, from 1 in the order in which they are added.
//
// Lifetime: the texts of what was added outlive this.
class DistinctResults {
public:
    struct Place {
        std::size_t number;
        bool isNew;
    };

    explicit DistinctResults(std::size_t expected) : expected_(expected) {}

    Place add(const WhichResult& result) {
        const Key key{result.path, result.type};
        if (!first_ || *first_ == key) { // most names have one candidate, for which no table is made
            const bool isNew = !first_;
            first_ = key;
            return {1, isNew};
        }
        if (places_.empty()) {
            places_.reserve(expected_);
        }
        const auto [place, isNew] = places_.try_emplace(key, places_.size() + 2);
        return {place->second, isNew};
    }

private:
    struct Key {
        std::u16string_view path;
        WhichResultType type;

        bool operator==(const Key& other) const noexcept { return type == other.type && equal(path, other.path); }
    };

    struct Hash {
        std::size_t operator()(const Key& key) const noexcept {
            return std::hash<std::u16string_view>()(key.path) + static_cast<std::size_t>(key.type);
        }
    };

    std::size_t expected_;
    std::optional<Key> first_;
    std::unordered_map<Key, std::size_t, Hash> places_; // of all but the first
};

} // namespace tessgen::kelwhich

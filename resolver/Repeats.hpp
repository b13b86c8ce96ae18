// Which results repeat an earlier one: the same path and the same type.
#pragma once

#include "host/Paths.hpp"
#include "tessgen/kelwhich/WhichResult.hpp"

#include <cstddef>
#include <functional>
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

    explicit DistinctResults(std::size_t expected) : places_(expected) {}

    Place add(const WhichResult& result) {
        const auto [place, isNew] = places_.try_emplace({result.path, result.type}, places_.size() + 1);
        return {place->second, isNew};
    }

private:
    struct Key {
        std::u16string_view path;
        WhichResultType type;

        bool operator==(const Key& other) const noexcept { return type == other.type && sameText(path, other.path); }
    };

    struct Hash {
        std::size_t operator()(const Key& key) const noexcept {
            return std::hash<std::u16string_view>()(key.path) + static_cast<std::size_t>(key.type);
        }
    };

    std::unordered_map<Key, std::size_t, Hash> places_;
};

} // namespace tessgen::kelwhich

// A map of absolute paths that finds what lies at or below one of them without looking at the rest: a hash table whose
// entries are linked as folders are.
//
// Lexical: paths are normal. Threads: one at a time.
#pragma once

#include "standalone/text/Hash.hpp"

#include <algorithm>
#include <cstddef>
#include <functional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>

namespace tessgen::standalone {

template <typename Value>
class PathTree {
public:
    // Lifetime: it stays where it is until it is erased.
    struct Entry {
        const std::string* path = nullptr;
        Value value{};
        Entry* above = nullptr; // of the folder above; null for "/"

    private:
        friend class PathTree;
        Entry* below = nullptr; // the first of those below
        Entry* next = nullptr;  // others below the same folder
        Entry* previous = nullptr;
    };

    // Null when there is none.
    [[nodiscard]] Entry* find(std::string_view path) {
        const auto found = entries_.find(path);
        return found == entries_.end() ? nullptr : &found->second;
    }

    // Adds what is missing of the entry and those of the folders above it.
    Entry& at(std::string_view path) {
        if (auto* const known = find(path)) {
            return *known;
        }
        Entry* const above = path.size() > 1 ? &at(path.substr(0, std::max<std::size_t>(path.rfind('/'), 1))) : nullptr;
        auto& [key, entry] = *entries_.try_emplace(std::string(path)).first;
        entry.path = &key;
        if (above != nullptr) {
            entry.above = above;
            entry.next = std::exchange(above->below, &entry);
            if (entry.next != nullptr) {
                entry.next->previous = &entry;
            }
        }
        return entry;
    }

    // Erases the entry of a path and all below it, after `visit` was called with each. When that throws, the entry and
    // those above it stay.
    template <typename Visit>
    void erase(std::string_view path, const Visit& visit) {
        if (auto* const top = find(path)) {
            erase(*top, visit);
        }
    }

    template <typename Visit>
    void forEach(const Visit& visit) const {
        for (const auto& [path, entry] : entries_) {
            visit(entry);
        }
    }

    void clear() { entries_.clear(); }

private:
    template <typename Visit>
    void erase(Entry& top, const Visit& visit) {
        while (top.below != nullptr) {
            erase(*top.below, visit);
        }
        visit(std::as_const(top));
        if (top.next != nullptr) {
            top.next->previous = top.previous;
        }
        if (top.previous != nullptr) {
            top.previous->next = top.next;
        } else if (top.above != nullptr) {
            top.above->below = top.next;
        }
        entries_.erase(entries_.find(*top.path));
    }

    std::unordered_map<std::string, Entry, TextHash, std::equal_to<>> entries_;
};

} // namespace tessgen::standalone

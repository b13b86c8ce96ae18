// The entries of a folder as one text: for each entry a byte for its kind, then its name, then a NUL.
#pragma once

#include "standalone/files/FileTree.hpp"

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace tessgen::standalone {

[[nodiscard]] std::size_t packedSize(const std::vector<FileTree::Entry>& entries);

// Writes `packedSize` bytes to `place`.
void pack(const std::vector<FileTree::Entry>& entries, char* place);

// The entries whose names are accepted.
template <typename Accepts>
std::vector<FileTree::Entry> unpacked(std::string_view listing, const Accepts& accepts) {
    std::vector<FileTree::Entry> entries;
    while (!listing.empty()) {
        const std::size_t end = listing.find('\0', 1);
        if (const auto name = listing.substr(1, end - 1); accepts(name)) {
            entries.push_back({std::string(name), static_cast<FileTree::Kind>(listing.front())});
        }
        listing.remove_prefix(end + 1);
    }
    return entries;
}

} // namespace tessgen::standalone

#include "standalone/files/PackedListing.hpp"

#include <algorithm>

namespace tessgen::standalone {

std::size_t packedSize(const std::vector<FileTree::Entry>& entries) {
    std::size_t size = 0;
    for (const FileTree::Entry& entry : entries) {
        size += entry.name.size() + 2;
    }
    return size;
}

void pack(const std::vector<FileTree::Entry>& entries, char* place) {
    for (const FileTree::Entry& entry : entries) {
        *place++ = static_cast<char>(entry.kind);
        place = std::copy_n(entry.name.c_str(), entry.name.size() + 1, place);
    }
}

} // namespace tessgen::standalone

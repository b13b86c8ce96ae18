#include "standalone/search/SearchForms.hpp"

#include "standalone/text/Text.hpp"

#include <algorithm>

namespace tessgen::standalone {

std::vector<const FileTree::Entry*> classFolders(const std::vector<FileTree::Entry>& entries) {
    std::vector<const FileTree::Entry*> sorted;
    sorted.reserve(entries.size());
    for (const FileTree::Entry& entry : entries) {
        if (entry.name.starts_with('@') && isUTF8(entry.name)) {
            sorted.push_back(&entry);
        }
    }
    std::sort(sorted.begin(), sorted.end(),
              [](const auto* a, const auto* b) { return isBeforeInUTF16(a->name, b->name); });
    return sorted;
}

} // namespace tessgen::standalone

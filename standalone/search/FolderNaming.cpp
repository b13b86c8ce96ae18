#include "standalone/search/FolderNaming.hpp"

#include "standalone/text/PathText.hpp"
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

bool leadsTo(FileTree::Kind kind, const FileTree& files, const std::string& folder, const FileTree::Entry* entry) {
    if (entry == nullptr || entry->kind != FileTree::Kind::link) {
        return entry != nullptr && entry->kind == kind;
    }
    return files.kindOf(joinPath(folder, entry->name)) == kind;
}

} // namespace tessgen::standalone

#include "standalone/SearchForms.hpp"

#include "standalone/PathText.hpp"
#include "standalone/Text.hpp"

#include <algorithm>
#include <utility>

namespace tessgen::standalone {

bool isPackageClassOrPrivate(std::string_view name) {
    return name.starts_with('+') || name.starts_with('@') || name == "private";
}

std::vector<const FileTree::Entry*> classFolders(const std::vector<FileTree::Entry>& entries) {
    std::vector<std::pair<std::u16string, const FileTree::Entry*>> keyed;
    for (const FileTree::Entry& entry : entries) {
        if (entry.name.starts_with('@')) {
            if (auto key = toUTF16(entry.name)) {
                keyed.emplace_back(std::move(*key), &entry);
            }
        }
    }
    std::sort(keyed.begin(), keyed.end());
    std::vector<const FileTree::Entry*> sorted;
    sorted.reserve(keyed.size());
    for (const auto& [key, entry] : keyed) {
        sorted.push_back(entry);
    }
    return sorted;
}

bool leadsTo(FileTree::Kind kind, const FileTree& files, const std::string& folder, const FileTree::Entry* entry) {
    if (entry == nullptr || entry->kind != FileTree::Kind::link) {
        return entry != nullptr && entry->kind == kind;
    }
    return files.kindOf(joinPath(folder, entry->name)) == kind;
}

} // namespace tessgen::standalone

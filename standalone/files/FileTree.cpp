#include "standalone/files/FileTree.hpp"

#include "standalone/text/PathText.hpp"

namespace tessgen::standalone {

FileTree::~FileTree() = default;

bool leadsTo(FileTree::Kind kind, const FileTree& files, const std::string& folder, const FileTree::Entry* entry) {
    if (entry == nullptr || entry->kind != FileTree::Kind::link) {
        return entry != nullptr && entry->kind == kind;
    }
    return files.kindOf(joinPath(folder, entry->name)) == kind;
}

} // namespace tessgen::standalone

// What the two ways of searching share: one name looked up on the disk, and an index of all names.
#pragma once

#include "standalone/files/FileTree.hpp"

#include <string>
#include <string_view>
#include <vector>

namespace tessgen::standalone {

// The entries of class folders (or of what is named like one), in the order of their UTF-16 code units, without those
// whose names are not UTF-8.
std::vector<const FileTree::Entry*> classFolders(const std::vector<FileTree::Entry>& entries);

// Whether an entry of `folder`, or none, is of that kind when links are followed.
// Errors: those of the file tree.
bool leadsTo(FileTree::Kind kind, const FileTree& files, const std::string& folder, const FileTree::Entry* entry);

} // namespace tessgen::standalone

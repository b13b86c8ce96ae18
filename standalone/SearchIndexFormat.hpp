// How a search index lies in its constant database: an entry for each folder.
//
// The key is the folder's path, which begins with "/". The value is the folder's stamp, six numbers of 64 bits, a
// letter that tells who may list it, then for each name in the folder a letter that tells its kind, its length in bytes
// (16 bits), and the name.
#pragma once

#include "standalone/DatabaseFormat.hpp"
#include "standalone/FileTree.hpp"
#include "standalone/FolderStamp.hpp"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tessgen::standalone {

inline constexpr DatabaseKind searchIndexKind{u"kelwhich search index", 2, "search index", "kelwhich index build"};

std::string encodeFolder(const FolderStatus& status, const std::vector<FileTree::Entry>& entries);

struct IndexedFolder {
    FolderStamp stamp;
    bool isForAll; // every user may list it
    std::string_view entries;
};

// A value without its checksum, and what it holds as entries. Nothing when it cannot be that; any bytes may be passed.
std::optional<IndexedFolder> decodeFolder(std::string_view value);
std::optional<std::vector<FileTree::Entry>> decodeEntries(std::string_view entries, const FileTree::Filter& wanted);

} // namespace tessgen::standalone

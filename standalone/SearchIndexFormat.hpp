// How a search index lies in its constant database: an entry for each folder.
//
// The key is the folder's path, which begins with "/". The value is the folder's stamp, six numbers of 64 bits, then
// for each name in the folder a letter that tells its kind, its length in bytes (16 bits), and the name.
#pragma once

#include "standalone/DatabaseFormat.hpp"
#include "standalone/FileTree.hpp"
#include "standalone/FolderStamp.hpp"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tessgen::standalone {

inline constexpr DatabaseKind searchIndexKind{u"kelwhich search index", 1, "search index", "kelwhich index build"};

std::string encodeFolder(const FolderStamp& stamp, const std::vector<FileTree::Entry>& entries);

// Values without their checksum. Nothing when they cannot be a folder's; any bytes may be passed.
std::optional<FolderStamp> decodeStamp(std::string_view value);
std::optional<std::vector<FileTree::Entry>> decodeEntries(std::string_view value, const FileTree::Filter& wanted);

} // namespace tessgen::standalone

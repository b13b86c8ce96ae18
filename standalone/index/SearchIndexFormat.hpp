// How a search index lies in its constant database: an entry for each folder.
//
// The key is the folder's path, which begins with "/". The value, in this order:
//   stamp    of the folder, six numbers of 64 bits
//   head     a letter that tells who may list it; the size of `specialFolders` and the number of `others`, of 32 bits
//   each specialFolders    the names of packages, classes and private folders: for each a letter that tells its kind,
//   its length in
//            bytes (16 bits), and the name
//   fingerprints    the first bytes of the fingerprints of all other names, then their second ones; by these, folders
//   are seen not to
//            hold a symbol's files
//   the hash of head, specialFolders and fingerprints, of 64 bits
//   others   the other names, as in `specialFolders`
// So most folders are told without a look at the whole entry: a stamp that is damaged is that of no folder. The hash is
// that of Hash.hpp.
#pragma once

#include "standalone/database/DatabaseFormat.hpp"
#include "standalone/files/FileTree.hpp"
#include "standalone/index/FolderStamp.hpp"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tessgen::standalone {

inline constexpr DatabaseKind searchIndexKind{u"kelwhich search index", 3, "search index", "kelwhich index build"};

// `isForAll`: every user may list the folder.
std::string encodeFolder(const FolderStamp& stamp, bool isWorldReadable, const std::vector<FileTree::Entry>& entries);

struct IndexedFolder {
    // Whether `others` must be looked at for the files of a symbol; hardly ever when there are none.
    bool mayContain(std::string_view symbol) const;

    FolderStamp stamp;
    bool isWorldReadable;
    std::string_view specialFolders;
    std::string_view fingerprints;
    std::string_view others; // not known to be right as long as the entry's checksum was not compared
};

// A value, whose own checksum need not have been compared. Nothing when it cannot be that; any bytes may be passed.
std::optional<IndexedFolder> decodeFolder(std::string_view value);

// Adds what is wanted of `specialFolders` or `others` to `found`; false when they do not hold names.
bool decodeEntries(std::string_view entries, const FileTree::Filter& wanted, std::vector<FileTree::Entry>& found);

} // namespace tessgen::standalone

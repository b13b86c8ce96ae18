// How a search index lies in its constant database: an entry for each folder.
//
// The key is the folder's path, which begins with "/". The value, in this order:
//   stamp    of the folder, six numbers of 64 bits
//   head     a letter that tells who may list it; the size of `forms` and the number of `others`, of 32 bits each
//   forms    the names of packages, classes and private folders: for each a letter that tells its kind, its length in
//            bytes (16 bits), and the name
//   marks    the first bytes of the marks of all other names, then their second ones; by these, folders are seen not to
//            hold a symbol's files
//   the hash of head, forms and marks, of 64 bits
//   others   the other names, as in `forms`
// So most folders are told without a look at the whole entry: a stamp that is damaged is that of no folder. The hash is
// that of Hash.hpp.
#pragma once

#include "standalone/DatabaseFormat.hpp"
#include "standalone/FileTree.hpp"
#include "standalone/FolderStamp.hpp"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tessgen::standalone {

inline constexpr DatabaseKind searchIndexKind{u"kelwhich search index", 3, "search index", "kelwhich index build"};

// `isForAll`: every user may list the folder.
std::string encodeFolder(const FolderStamp& stamp, bool isForAll, const std::vector<FileTree::Entry>& entries);

struct IndexedFolder {
    // Whether `others` must be looked at for the files of a symbol; hardly ever when there are none.
    bool mayHold(std::string_view symbol) const;

    FolderStamp stamp;
    bool isForAll;
    std::string_view forms;
    std::string_view marks;
    std::string_view others; // not known to be right as long as the entry's checksum was not compared
};

// A value, whose own checksum need not have been compared. Nothing when it cannot be that; any bytes may be passed.
std::optional<IndexedFolder> decodeFolder(std::string_view value);

// Adds what is wanted of `forms` or `others` to `found`; false when they do not hold names.
bool decodeEntries(std::string_view entries, const FileTree::Filter& wanted, std::vector<FileTree::Entry>& found);

} // namespace tessgen::standalone

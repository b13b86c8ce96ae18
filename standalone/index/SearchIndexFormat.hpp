// The search index inside its constant database: one entry for each folder.
//
// The key is the folder's path, which begins with "/". The value, in this order:
//   stamp           of the folder, six numbers of 64 bits
//   head            one byte for who may list the folder; then, of 32 bits each, the size of `specialFolders` and the
//                   number of `others`
//   specialFolders  entries with the names of packages, classes and private folders: for each one byte for its kind,
//                   the length of its name in bytes (16 bits), and the name
//   fingerprints    of the names in `others`: first the first byte of each, then the second byte of each. They show
//                   that a folder has no file of a symbol
//   hash            (Hash.hpp) of head, specialFolders and fingerprints, 64 bits
//   others          the other entries, in the form of `specialFolders`
// A look-up mostly needs only stamp and head: a corrupt stamp matches no folder; head, specialFolders and fingerprints
// have their own hash, so `others` and the entry's checksum stay unread.
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

// `isWorldReadable`: every user may list the folder.
[[nodiscard]] std::string encodeFolder(const FolderStamp& stamp, bool isWorldReadable,
                                       const std::vector<FileTree::Entry>& entries);

struct IndexedFolder {
    // False when `others` has no file of the symbol; true also, though rarely, by a collision of fingerprints.
    [[nodiscard]] bool mayContain(std::string_view symbol) const;

    FolderStamp stamp;
    bool isWorldReadable;
    std::string_view specialFolders;
    std::string_view fingerprints;
    std::string_view others; // unverified until the entry's checksum is compared
};

// Decodes any bytes, verified or not; nothing when they are not a value.
[[nodiscard]] std::optional<IndexedFolder> decodeFolder(std::string_view value);

// Adds the wanted entries of `specialFolders` or `others` to `found`; false when their form is wrong.
[[nodiscard]] bool decodeEntries(std::string_view entries, const EntryFilter& wanted,
                                 std::vector<FileTree::Entry>& found);

} // namespace tessgen::standalone

// The search index inside its constant database: one entry for each folder.
//
// The key is the folder's path, which begins with "/". The value, in this order:
//   sizes           of `specialFolders` and `below`, of 32 bits each
//   summary         of the folder: one byte for who may list it; its stamp, six numbers of 64 bits; the number of its
//                   entries, of 32 bits; and the fingerprints of their names, which show that it has no file of a
//                   symbol: first the first byte of each, then the second byte of each, `others` last
//   specialFolders  entries with the names of packages, classes and private folders: for each one byte for its kind,
//                   the length of its name in bytes (16 bits), and the name
//   below           for each of `specialFolders` but the packages, in their order, the summary in the folder's own
//                   entry, or a byte that says that it has none
//   hash            (Hash.hpp) of all these, 64 bits
//   others          the other entries, in the form of `specialFolders`
// A plain name is looked for in a search folder and in its class and private folders. Mostly one entry shows that all
// of them lack it. `others`, and with it the entry's checksum, then stays unread.
#pragma once

#include "standalone/database/DatabaseFormat.hpp"
#include "standalone/files/FileTree.hpp"
#include "standalone/index/FolderStamp.hpp"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tessgen::standalone {

inline constexpr DatabaseKind searchIndexKind{u"kelwhich search index", 4, "search index", "kelwhich index build"};

struct EncodedFolder {
    std::string summary;
    std::string specialFolders;
    std::string others;
};

// `isWorldReadable`: every user may list the folder.
[[nodiscard]] EncodedFolder encodeFolder(const FolderStamp& stamp, bool isWorldReadable,
                                         const std::vector<FileTree::Entry>& entries);
// The folder's value.
[[nodiscard]] std::string encodeValue(const EncodedFolder& folder, std::string_view below);

// In `below`, for a folder that has no entry.
inline constexpr std::string_view noSummary = "-";

// Of an entry's name. That of a file is its symbol's, the name up to the first dot.
struct Fingerprint {
    explicit Fingerprint(std::string_view name);

    char first;
    char second;
};

struct FolderSummary {
    // False when the folder has no file of the symbol; true also, though rarely, by a collision of fingerprints.
    [[nodiscard]] bool mayContain(const Fingerprint& symbol) const;
    [[nodiscard]] bool operator==(const FolderSummary&) const = default;

    bool isRecorded = false; // else the rest means nothing
    bool isWorldReadable = false;
    FolderStamp stamp{};
    std::string_view fingerprints = {};
};

struct IndexedEntry {
    std::string_view name;
    FileTree::Kind kind;
};

struct IndexedFolder {
    FolderSummary summary;
    std::string_view specialFolders;
    std::string_view below;
    std::string_view others; // unverified until the entry's checksum is compared
};

// All of these read any bytes, verified or not. They return nothing, or false, when these are not what a build writes.
[[nodiscard]] std::optional<IndexedFolder> decodeFolder(std::string_view value);
// Takes the first one from the front of `bytes`.
[[nodiscard]] std::optional<IndexedEntry> takeEntry(std::string_view& bytes);
[[nodiscard]] std::optional<FolderSummary> takeSummary(std::string_view& bytes);
// Adds the wanted entries of `specialFolders` or `others` to `found`.
[[nodiscard]] bool decodeEntries(std::string_view entries, const EntryFilter& wanted,
                                 std::vector<FileTree::Entry>& found);

} // namespace tessgen::standalone

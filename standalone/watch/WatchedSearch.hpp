// Looks names up in listings that are kept as long as a watch tells no change.
//
// Threads: one at a time.
#pragma once

#include "standalone/files/FileTree.hpp"
#include "standalone/manifest/Installation.hpp"
#include "standalone/search/IncompleteNames.hpp"
#include "standalone/search/NameIndex.hpp"
#include "standalone/search/NameSearch.hpp"
#include "standalone/search/SearchPathWalk.hpp"
#include "standalone/watch/WatchedFileTree.hpp"

#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace tessgen::standalone {

class WatchedSearch {
public:
    // Call `startOver` before anything else. Lifetime: both outlive it.
    WatchedSearch(const Installation& installation, FolderWatch& watch);

    // Forgets everything, and lists every folder of the search path with `disk`.
    // Errors: those of NameIndex and FolderWatch. After an error, it must be called again.
    void startOver(const FileTree& disk);

    // Lists with `disk` what the changes concern. Errors: as for `startOver`.
    void apply(const std::vector<FolderChange>& changes, const FileTree& disk);

    // As NameSearch::find for a plain or dotted name. Folders that are not kept are searched with `disk`, each time.
    // Errors: those of `disk`.
    [[nodiscard]] std::vector<FoundPlace> find(std::string_view symbol, const FileTree& disk) const;
    // Whether `find` does without its disk: for this symbol, and for all.
    [[nodiscard]] bool isKept(std::string_view symbol) const;
    [[nodiscard]] bool isAllKept() const { return partial_.empty(); }

    // Every symbol that has a file, once. Those of files that are not kept are missing.
    [[nodiscard]] std::vector<std::string> symbols() const { return index_->symbols(); }
    [[nodiscard]] const WatchedFileTree& files() const { return files_; }

private:
    using Number = WatchedFileTree::User; // of a folder of the search path

    void addAnew(const std::set<Number>& searchFolders, const FileTree& disk);
    void addAllAnew(const FileTree& disk);

    const Installation* installation_;
    WatchedFileTree files_;
    const SearchedDisk disk_;
    std::optional<NameIndex> index_;
    std::vector<IncompleteNames> incomplete_; // of each folder of the search path
    std::vector<Number> partial_;             // those that have some, in order
};

} // namespace tessgen::standalone

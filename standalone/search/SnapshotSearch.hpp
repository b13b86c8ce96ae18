// Looks names up in a snapshot of the disk: answers as NameSearch did when the snapshot was taken.
//
// Threads: any, at the same time.
#pragma once

#include "standalone/files/CachingFileTree.hpp"
#include "standalone/files/FileTree.hpp"
#include "standalone/manifest/Installation.hpp"
#include "standalone/search/NameIndex.hpp"
#include "standalone/search/NameSearch.hpp"
#include "standalone/text/Hash.hpp"

#include <functional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <vector>

namespace tessgen::standalone {

class SnapshotSearch {
public:
    // Takes the snapshot: lists every folder of the search path once, with its class, package and private folders. A
    // folder that cannot be read is an error of the names that may need it, not of this.
    // Errors: std::runtime_error when there is more than a NameIndex can hold.
    // Lifetime: both outlive the search.
    SnapshotSearch(const Installation& installation, const FileTree& files);
    // The same. `now` is another tree of the same disk, with which the snapshot is taken; it need not outlive this.
    SnapshotSearch(const Installation& installation, const FileTree& files, const FileTree& now);

    // As NameSearch::find when the snapshot was taken. Names with "/", and packages that are reached through more than
    // one link, are read from the disk on first use and then cached.
    // Errors: those of the file tree, each time that a name needs what could not be read.
    [[nodiscard]] std::vector<FoundPlace> find(std::u16string_view name) const;

    // Every symbol that has a file, once.
    [[nodiscard]] std::vector<std::string> symbols() const { return index_.symbols(); }

    // Whether these are all: no folder was unreadable, and no package is reached through more than one link.
    [[nodiscard]] bool isComplete() const { return !allIncomplete_ && incomplete_.empty(); }
    // Whether a folder or file was unreadable.
    [[nodiscard]] bool hasUnreadable() const { return hasUnreadable_; }

private:
    friend class SearchPathWalk;

    [[nodiscard]] bool isIncomplete(std::string_view symbol) const;

    const CachingFileTree files_;
    const NameSearch search_; // in the cached files
    NameIndex index_;
    std::unordered_map<std::u16string, std::vector<Builtin>, TextHash, std::equal_to<>> builtins_; // by their names
    // First parts of the names that the index may lack files of, "" for every plain name: `search_` finds these.
    std::unordered_set<std::string, TextHash> incomplete_;
    bool allIncomplete_ = false;
    bool hasUnreadable_ = false;
};

} // namespace tessgen::standalone

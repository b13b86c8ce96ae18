// Looks names up in a snapshot of the disk: answers as NameSearch did when the snapshot was taken.
//
// Threads: any, at the same time.
#pragma once

#include "standalone/files/CachingFileTree.hpp"
#include "standalone/files/FileTree.hpp"
#include "standalone/manifest/Installation.hpp"
#include "standalone/search/BuiltinTable.hpp"
#include "standalone/search/IncompleteNames.hpp"
#include "standalone/search/NameIndex.hpp"
#include "standalone/search/NameSearch.hpp"

#include <string>
#include <string_view>
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
    [[nodiscard]] bool isComplete() const { return incomplete_.isEmpty(); }
    // Whether a folder or file was unreadable.
    [[nodiscard]] bool hasUnreadable() const { return incomplete_.hasUnreadable(); }

private:
    const CachingFileTree files_;
    const NameSearch search_; // in the cached files
    NameIndex index_;
    IncompleteNames incomplete_; // `search_` finds these
    const BuiltinTable builtins_;
};

} // namespace tessgen::standalone

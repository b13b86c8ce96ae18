// The look-up of names in one view of the disk: what NameSearch would answer, without looking at the disk again.
//
// Threads: any, at the same time.
#pragma once

#include "standalone/files/CachingFileTree.hpp"
#include "standalone/files/FileTree.hpp"
#include "standalone/manifest/Installation.hpp"
#include "standalone/search/NameIndex.hpp"
#include "standalone/search/NameSearch.hpp"

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <vector>

namespace tessgen::standalone {

class SnapshotSearch {
public:
    // Takes the view: lists every folder of the search path once, and its class, package and private folders. What
    // cannot be read is an error of the names that it may concern, not of this.
    // Errors: std::runtime_error when there is more than a NameIndex can hold.
    // Lifetime: both outlive the search.
    SnapshotSearch(const Installation& installation, const FileTree& files);

    // As NameSearch::find, at the moment when the view was taken. What the view cannot hold is looked at when it is
    // first asked for and then remembered: names with "/", and packages that are reached through more than one link.
    // Errors: those of the file tree, each time that a name touches what could not be read.
    std::vector<FoundPlace> find(std::u16string_view name) const;

    // Every symbol that has a file, once.
    std::vector<std::string> symbols() const { return index_.symbols(); }

private:
    friend class SearchPathWalk;

    struct TextHash {
        using is_transparent = void;
        std::size_t operator()(std::u16string_view text) const { return std::hash<std::u16string_view>()(text); }
    };

    bool isUnsure(std::string_view symbol) const;

    const CachingFileTree files_;
    const NameSearch search_;
    NameIndex index_;
    std::unordered_map<std::u16string, std::vector<Builtin>, TextHash, std::equal_to<>> builtins_; // by their names
    // First parts of the names that the index may be wrong about, "" for every plain name: these are searched in what
    // is remembered of the disk.
    std::unordered_set<std::string> unsure_;
    bool allUnsure_ = false;
};

} // namespace tessgen::standalone

// The search index: what the folders of a search path held when they were listed, in one constant database file.
//
// A folder is taken to hold it as long as its stamp is the recorded one; a folder that has changed, or that is not
// recorded, is looked at on the disk. All names are recorded, so that an index does for every manifest.
// The file is mapped and never written; nothing is parsed when it is opened.
// Threads: look-ups from any thread, at the same time.
// Errors: std::runtime_error with one line that names the file and says what to do.
#pragma once

#include "standalone/database/DatabaseFile.hpp"
#include "standalone/files/FileTree.hpp"

#include <optional>
#include <string>
#include <vector>

namespace tessgen::standalone {

class SearchIndex {
public:
    // Errors: no such file, not a regular file, not an index, another version, cut short. What is damaged inside is an
    // error of the questions that come upon it, or a folder that only the disk can tell of, and never alters an answer.
    explicit SearchIndex(const std::string& file);

    // What the folder holds of what is wanted; nothing when only the disk can tell.
    // Errors: a damaged entry.
    std::optional<std::vector<FileTree::Entry>> entries(const std::string& folder,
                                                        const FileTree::Filter& wanted) const;

private:
    DatabaseFile file_;
};

// The disk, for which an index answers as far as it can.
// Lifetime: index and disk outlive it.
class IndexedFileTree final : public FileTree {
public:
    // `index` may be null.
    IndexedFileTree(const SearchIndex* index, const FileTree& disk) : index_(index), disk_(&disk) {}

    // Errors: those of the disk and of the index.
    std::optional<std::vector<Entry>> entries(const std::string& folder, const Filter& wanted) const override;
    std::optional<Kind> kindOf(const std::string& path) const override { return disk_->kindOf(path); }

private:
    const SearchIndex* index_;
    const FileTree* disk_;
};

} // namespace tessgen::standalone

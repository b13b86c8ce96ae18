// The search index: the listings of a search path's folders, in one constant database file.
//
// A listing counts as long as the folder has the recorded stamp. A folder that has changed, or that is not recorded, is
// listed on the disk. All names are recorded, so that one index serves every manifest with these folders.
// The file is mapped and never written; nothing is parsed when it is opened.
// Threads: look-ups from any thread, at the same time.
// Errors: std::runtime_error with one line that names the file and says what to do.
#pragma once

#include "standalone/database/DatabaseFile.hpp"
#include "standalone/files/DirectoryHandle.hpp"
#include "standalone/files/FileTree.hpp"

#include <optional>
#include <string>
#include <vector>

namespace tessgen::standalone {

class SearchIndex {
public:
    // Errors: no such file, not a regular file, not an index, another version, cut short. Damage inside is an error of
    // the questions that meet it, or makes a folder be listed on the disk. It never alters an answer.
    explicit SearchIndex(const std::string& file);

    // The wanted entries of a folder; nothing when only the disk knows them. Walks to the folder from `top`, as
    // RealFileTree does.
    // Errors: a damaged entry.
    [[nodiscard]] std::optional<std::vector<FileTree::Entry>>
    entries(const std::string& folder, const EntryFilter& wanted, const DirectoryHandle* top = nullptr) const;

private:
    DatabaseFile file_;
};

// The disk behind an index: a folder is listed only when the index does not have it.
// Lifetime: index, disk and top outlive it.
// Errors: those of the disk and of the index.
class IndexedFileTree final : public FileTree {
public:
    // `index` and `top` may be null.
    IndexedFileTree(const SearchIndex* index, const FileTree& disk, const DirectoryHandle* top = nullptr)
        : index_(index), disk_(&disk), top_(top) {}

    [[nodiscard]] std::optional<std::vector<Entry>> entries(const std::string& folder,
                                                            const EntryFilter& wanted) const override;
    [[nodiscard]] std::optional<Kind> kindOf(const std::string& path) const override { return disk_->kindOf(path); }

private:
    const SearchIndex* index_;
    const FileTree* disk_;
    const DirectoryHandle* top_;
};

} // namespace tessgen::standalone

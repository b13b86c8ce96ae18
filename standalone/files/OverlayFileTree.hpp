// A file tree as if more files were in it, with the folders that lead to them.
//
// Threads: those of the other tree. Lifetime: the other tree outlives it.
#pragma once

#include "standalone/files/FileTree.hpp"

#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace tessgen::standalone {

class OverlayFileTree final : public FileTree {
public:
    // `added` are absolute paths without ".", "..", and "/" at the end. What is there at such a path is replaced.
    OverlayFileTree(const FileTree& files, std::set<std::string> added) : files_(files), added_(std::move(added)) {}

    // Errors: those of the other tree.
    [[nodiscard]] std::optional<std::vector<Entry>> entries(const std::string& folder,
                                                            const EntryFilter& wanted) const override;
    [[nodiscard]] std::optional<Kind> kindOf(const std::string& path) const override;

private:
    const FileTree& files_;
    const std::set<std::string> added_;
};

} // namespace tessgen::standalone

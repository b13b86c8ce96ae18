// A file tree for whoever looks only so far: once that is far enough, it reports everything as absent.
//
// Threads: those of `goesOn`.
#pragma once

#include "standalone/files/FileTree.hpp"

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace tessgen::standalone {

class BoundedFileTree final : public FileTree {
public:
    // `goesOn` is asked before each question, and before each entry that is wanted.
    // Lifetime: `tree` outlives it.
    BoundedFileTree(const FileTree& tree, std::function<bool()> goesOn) : tree_(&tree), goesOn_(std::move(goesOn)) {}

    [[nodiscard]] std::optional<std::vector<Entry>> entries(const std::string& folder,
                                                            const EntryFilter& wanted) const override {
        const auto accepts = [&](std::string_view name) { return wanted.accepts(name) && goesOn_(); };
        return goesOn_() ? tree_->entries(folder, {accepts}) : std::nullopt;
    }
    [[nodiscard]] std::optional<Kind> kindOf(const std::string& path) const override {
        return goesOn_() ? tree_->kindOf(path) : std::nullopt;
    }

private:
    const FileTree* tree_;
    std::function<bool()> goesOn_;
};

} // namespace tessgen::standalone

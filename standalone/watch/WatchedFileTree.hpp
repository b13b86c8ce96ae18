// A file tree that lists a folder once, and again only when a watch tells that it changed.
//
// It refuses what a watch cannot promise, so that the disk is asked each time: links, folders that are not watched, and
// those that could not be listed.
// Threads: one at a time.
#pragma once

#include "standalone/files/FileTree.hpp"
#include "standalone/watch/FolderWatch.hpp"
#include "standalone/watch/PathTree.hpp"

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <system_error>
#include <vector>

namespace tessgen::standalone {

// What the tree refuses.
class NotKept final : public std::system_error {
public:
    NotKept();
};

class WatchedFileTree final : public FileTree {
public:
    // Who asks for a folder, and is told when it changed.
    using User = std::uint32_t;

    // The tree keeps the `wanted` entries of a folder; no question may want others.
    // Lifetime: the watch outlives it.
    WatchedFileTree(FolderWatch& watch, EntryFilter wanted);

    // The next questions are `user`'s. `disk` lists folders; it outlives these questions.
    void askFor(User user, const FileTree& disk);

    // Every kept entry of a folder. Errors: NotKept.
    [[nodiscard]] std::optional<std::vector<Entry>> entries(const std::string& folder,
                                                            const EntryFilter& wanted) const override;
    // Errors: NotKept, always: only links are asked for.
    [[nodiscard]] std::optional<Kind> kindOf(const std::string& path) const override;

    // Drops what a change makes unsure. Returns who asked for it; some more than once.
    std::vector<User> drop(const FolderChange& change);
    // Drops everything.
    void clear() { kept_.clear(); }

    // How many folders were listed.
    [[nodiscard]] std::uint64_t listed() const { return listed_; }
    // How many folders and links are asked for each time because they are not watched, by NotWatched.
    [[nodiscard]] std::array<std::size_t, notWatchedCount> notWatched() const;

private:
    struct Kept {
        bool isSure = false;                     // the listing is the folder's
        std::optional<std::string> listing = {}; // as PackedListing.hpp packs it
        std::optional<NotWatched> reason = {};
        std::vector<User> users = {};
    };
    Kept& keptFor(const std::string& path) const;

    FolderWatch* watch_;
    const EntryFilter wanted_;
    User user_ = 0;
    const FileTree* disk_ = nullptr;
    // Key: the path. Kept: listings, absences, and who asked for what is refused. Dropped: when it changed. Growth:
    // with the folders that are there, and those above them. Threads: the tree's.
    mutable PathTree<Kept> kept_;
    mutable std::uint64_t listed_ = 0;
};

} // namespace tessgen::standalone

// Notices that another file is at a path, or that the one there was written to.
//
// Threads: one at a time.
#pragma once

#include "standalone/index/FolderStamp.hpp"
#include "standalone/watch/FolderWatch.hpp"

#include <optional>
#include <string>

namespace tessgen::standalone {

// Asks the disk each time.
class FileStamp {
public:
    // Construct it before the file is read, so that no change is missed.
    explicit FileStamp(std::string path);

    // Whether another file, or none, is there since the last call, or since construction.
    [[nodiscard]] bool hasChanged();

private:
    using Stamp = std::optional<FolderStamp>;
    [[nodiscard]] Stamp stamp() const;

    std::string path_;
    Stamp last_; // none without a file
};

// Asks the disk only when a change was told, where changes of the file are watched.
class WatchedFile {
public:
    // As for FileStamp.
    explicit WatchedFile(const std::string& path) : path_(path), stamp_(path) {}

    // Call it for each change that the watch tells.
    void note(const FolderChange& change);
    // Call it when changes were lost.
    void forget() { isSure_ = false; }

    // As FileStamp::hasChanged.
    // Errors: std::bad_alloc.
    [[nodiscard]] bool hasChanged(FolderWatch& watch);

    // Whether its next change is told, as far as the last look at the disk knows.
    [[nodiscard]] bool isWatched() const { return isWatched_; }

private:
    std::string path_;
    FileStamp stamp_;
    bool isSure_ = false;
    bool isWatched_ = false;
};

// Lexical: whether something else may be at the path after the change.
[[nodiscard]] bool concerns(const FolderChange& change, const std::string& path);

} // namespace tessgen::standalone

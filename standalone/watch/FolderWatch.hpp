// Which folders of this machine changed, by their paths: inotify, and the list of mounts.
//
// The system queues a change before the call that makes it returns, so `take` tells every change that was made before
// it was called. Links are not followed, since a watch sees no change of what they lead to.
//
// Threads: one at a time.
#pragma once

#include "standalone/files/Descriptor.hpp"
#include "standalone/files/MountPoints.hpp"
#include "standalone/watch/PathTree.hpp"

#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>
#include <unordered_map>
#include <vector>

namespace tessgen::standalone {

// Why changes of a folder are not told.
enum class NotWatched {
    link,   // the folder, or one above it, is a link
    disk,   // it lies on a disk that others may change (network, FUSE), or on an unknown kind of disk
    access, // the system allows no watch: it needs the right to read the folder and each one above it
    limit,  // the system's limit of watches is reached
};
inline constexpr std::size_t notWatchedCount = 4;

struct FolderChange {
    enum class What {
        entry,   // an entry of the folder was made, removed or renamed; or a folder in it got other rights
        content, // a file in the folder, which `tellsContent`, was closed after writing, or got other rights
        folder,  // the folder itself was removed or renamed, or got other rights
    };
    What what;
    std::string folder;
    std::string name; // of the entry or file
};

// Lexical: whether changes of the content and the rights of what is in a folder are told. Package, class and private
// folders, which are many, tell none, unless the folder above is such a one: that one tells of their own rights.
[[nodiscard]] bool tellsContent(std::string_view folder);

// The system has no inotify, or none is left for this user or process.
class CannotWatch final : public std::system_error {
public:
    using std::system_error::system_error;
};

class FolderWatch {
public:
    // Errors: CannotWatch; std::system_error when the list of mounts cannot be read.
    FolderWatch();

    // Watches a folder (absolute, lexically normal) and each folder above it from now on, or says why not. Nothing to
    // watch may be there: that it appears is told as a change of the folder above.
    // Errors: std::bad_alloc.
    [[nodiscard]] std::optional<NotWatched> watch(const std::string& folder);

    struct Changes {
        std::vector<FolderChange> list; // in the order in which they were made
        bool isQueueLost = false;       // there were more than the system keeps: everything may have changed
        bool areMountsOther = false;    // everything may lead elsewhere
    };
    // The changes since the last call, up to this one. What changed at or below a path, or might have, is no longer
    // watched. Errors: std::system_error.
    [[nodiscard]] Changes take();

    // Stops watching all folders, forgets their changes, and reads the list of mounts anew.
    // Errors: std::system_error.
    void clear();

    // The file names of all mount points, as they are while `take` tells no other.
    [[nodiscard]] const FileNames& mountNames() const { return mountNames_; }

    // Readable when `take` has something to tell. Lifetime: this object's.
    [[nodiscard]] int descriptor() const { return readyToWaitFor_.get(); }

private:
    struct Watched {
        bool isThere;
        std::optional<NotWatched> notWatched; // why not, if it may be there
    };
    using Watches = PathTree<std::optional<int>>; // what the system calls the watch, where there is one
    [[nodiscard]] Watched watchIfThere(Watches::Entry& folder);
    [[nodiscard]] bool mayBeMountPoint(const std::string& folder) const;
    [[nodiscard]] Watched add(Watches::Entry& folder, std::uint32_t mask);
    void forget(std::string_view path);
    void readQueue(const std::function<void(int watch, std::uint32_t mask, std::string_view name)>& visit);
    void addChange(int watch, std::uint32_t mask, std::string_view name, Changes& changes);

    Descriptor queue_;  // inotify
    Descriptor mounts_; // /proc/self/mountinfo
    Descriptor ready_;  // epoll over both
    // Whoever asks whether mounts changed is told once, and others with the same descriptors are not.
    Descriptor mountsToWaitFor_;
    Descriptor readyToWaitFor_;
    FileNames mountNames_;
    Watches watches_;
    std::unordered_multimap<int, const Watches::Entry*> folders_; // of each watch: a folder may have several paths
};

} // namespace tessgen::standalone

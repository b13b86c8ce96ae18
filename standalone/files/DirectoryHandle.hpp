// A folder that is held open while folders below it are looked at: the system then walks only the rest of each path.
//
// It stays the folder that it was, whatever its path leads to later, so it is held while one name is searched or one
// view is taken, and no longer. So long it takes a descriptor of the process.
// Threads: any, at the same time.
#pragma once

#include <string>

namespace tessgen::standalone {

// How the system is told of a path: the two first arguments of openat, fstatat and faccessat.
struct PathAt {
    int folder; // AT_FDCWD when the path is absolute
    const char* path;
};

class DirectoryHandle {
public:
    // Errors: none; when the folder cannot be opened, or links lead to it, paths are walked as a whole: the system
    // counts the links of a walk, and a path must not be longer in one way than in the other.
    explicit DirectoryHandle(const std::string& path);
    DirectoryHandle(const DirectoryHandle&) = delete;
    DirectoryHandle& operator=(const DirectoryHandle&) = delete;
    ~DirectoryHandle();

    // To `path`, which is absolute and outlives the walk.
    PathAt to(const std::string& path) const;

private:
    std::string above_; // what paths below the folder begin with
    int descriptor_;
};

} // namespace tessgen::standalone

// A folder held open, so that the system walks only the rest of the path to what lies below it.
//
// The handle stays with the folder even if its path leads elsewhere later. So hold it while one name is searched or one
// snapshot is taken, and no longer; `isAtItsPath` then says whether the whole paths would have led to the same. It
// occupies one descriptor of the process. Threads: any, at the same time.
#pragma once

#include "standalone/files/Descriptor.hpp"

#include <optional>
#include <string>
#include <sys/types.h>
#include <utility>

namespace tessgen::standalone {

// The first two arguments of openat, fstatat and faccessat.
struct PathAt {
    int folder; // AT_FDCWD when the path is absolute
    const char* path;
};

class DirectoryHandle {
public:
    // Errors: none. When the folder cannot be opened, or links lead to it, whole paths are walked: the system limits
    // the links of one walk, and a path must not reach further with the handle than without it.
    explicit DirectoryHandle(const std::string& path);
    DirectoryHandle(const DirectoryHandle&) = delete;
    DirectoryHandle& operator=(const DirectoryHandle&) = delete;

    // The walk to `path`, which is absolute and outlives it.
    [[nodiscard]] PathAt to(const std::string& path) const;

    // Whether the path leads to the folder to which it led when this was made; false when that was none.
    [[nodiscard]] bool isAtItsPath() const;

private:
    using Identity = std::pair<dev_t, ino_t>;
    static std::optional<Identity> identityOf(const PathAt& path, int flags);

    std::string path_;
    std::string above_; // what paths below the folder begin with
    Descriptor folder_;
    std::optional<Identity> identity_; // of a folder that is not held
};

// The walk from `top`, or the whole one when `top` is null.
[[nodiscard]] PathAt walkFrom(const DirectoryHandle* top, const std::string& path);

} // namespace tessgen::standalone

#include "standalone/files/DirectoryHandle.hpp"

#include "standalone/text/PathText.hpp"

#include <climits>
#include <fcntl.h>
#include <linux/openat2.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace tessgen::standalone {

namespace {

int openWithoutLinks(const std::string& path) {
    open_how how{};
    how.flags = O_PATH | O_DIRECTORY | O_CLOEXEC;
    how.resolve = RESOLVE_NO_SYMLINKS;
    return static_cast<int>(syscall(SYS_openat2, AT_FDCWD, path.c_str(), &how, sizeof how));
}

} // namespace

DirectoryHandle::DirectoryHandle(const std::string& path)
    : path_(path), above_(joinPath(path, "")), folder_(openWithoutLinks(path)) {
    if (!folder_.isOpen()) {
        identity_ = identityOf({AT_FDCWD, path_.c_str()}, 0);
    }
}

std::optional<DirectoryHandle::Identity> DirectoryHandle::identityOf(const PathAt& path, int flags) {
    struct stat status {};
    return fstatat(path.folder, path.path, &status, flags) == 0 ? std::optional(Identity(status.st_dev, status.st_ino))
                                                                : std::nullopt;
}

bool DirectoryHandle::isAtItsPath() const {
    const auto own = folder_.isOpen() ? identityOf({folder_.get(), ""}, AT_EMPTY_PATH) : identity_;
    return own && own == identityOf({AT_FDCWD, path_.c_str()}, 0);
}

// A path that is too long for the system as a whole is not walked in part either. The folder itself is not below it.
PathAt DirectoryHandle::to(const std::string& path) const {
    const bool isBelow = path.size() > above_.size() && path.starts_with(above_) && path[above_.size()] != '/';
    return folder_.isOpen() && isBelow && path.size() < PATH_MAX ? PathAt{folder_.get(), path.c_str() + above_.size()}
                                                                 : PathAt{AT_FDCWD, path.c_str()};
}

PathAt walkFrom(const DirectoryHandle* top, const std::string& path) {
    return top == nullptr ? PathAt{AT_FDCWD, path.c_str()} : top->to(path);
}

} // namespace tessgen::standalone

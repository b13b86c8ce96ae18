#include "standalone/files/DirectoryHandle.hpp"

#include "standalone/text/PathText.hpp"

#include <climits>
#include <fcntl.h>
#include <linux/openat2.h>
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
    : above_(joinPath(path, "")), folder_(openWithoutLinks(path)) {}

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

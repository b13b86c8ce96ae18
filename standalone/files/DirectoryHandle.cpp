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
    : above_(joinPath(path, "")), descriptor_(openWithoutLinks(path)) {}

DirectoryHandle::~DirectoryHandle() {
    if (descriptor_ >= 0) {
        close(descriptor_);
    }
}

// A path that the system does not take as a whole is not walked in part either, and the folder itself is walked as
// such.
PathAt DirectoryHandle::to(const std::string& path) const {
    const bool isBelow = path.size() > above_.size() && path.starts_with(above_) && path[above_.size()] != '/';
    return descriptor_ >= 0 && isBelow && path.size() < PATH_MAX ? PathAt{descriptor_, path.c_str() + above_.size()}
                                                                 : PathAt{AT_FDCWD, path.c_str()};
}

} // namespace tessgen::standalone

#include "standalone/HeldFolder.hpp"

#include "standalone/PathText.hpp"

#include <climits>
#include <fcntl.h>
#include <unistd.h>

namespace tessgen::standalone {

HeldFolder::HeldFolder(const std::string& path)
    : descriptor_(open(path.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC)), above_(joinPath(path, "")) {}

HeldFolder::~HeldFolder() {
    if (descriptor_ >= 0) {
        close(descriptor_);
    }
}

// A path that the system does not take as a whole is not walked in part either, and the root itself is walked as such.
WalkedPath HeldFolder::to(const std::string& path) const {
    const bool isBelow = path.size() > above_.size() && path.starts_with(above_);
    return descriptor_ >= 0 && isBelow && path.size() < PATH_MAX ? WalkedPath{descriptor_, path.c_str() + above_.size()}
                                                                 : WalkedPath{AT_FDCWD, path.c_str()};
}

} // namespace tessgen::standalone

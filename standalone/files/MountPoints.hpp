// What is mounted in this process's view of the disk. A listing shows the file below a mount point, not the mounted
// one.
//
// Threads: any.
#pragma once

#include <set>
#include <string>

namespace tessgen::standalone {

// The file names of all mount points, without their folders, since links may lead there by other paths. Empty where the
// system does not tell.
[[nodiscard]] std::set<std::string> namesOfMountPoints();

} // namespace tessgen::standalone

// What is mounted in this process's view of the disk. A listing shows the file below a mount point, not the mounted
// one.
//
// Threads: any.
#pragma once

#include "standalone/files/Descriptor.hpp"
#include "standalone/files/FileTree.hpp"
#include "standalone/text/Hash.hpp"

#include <functional>
#include <string>
#include <unordered_set>
#include <vector>

namespace tessgen::standalone {

inline constexpr const char* mountsFile = "/proc/self/mountinfo";

using FileNames = std::unordered_set<std::string, TextHash, std::equal_to<>>;

// The file names of all mount points, without their folders, since links may lead there by other paths. Empty where the
// system does not tell.
[[nodiscard]] FileNames namesOfMountPoints();
// The same, from `mountsFile` that is open. Errors: std::system_error.
[[nodiscard]] FileNames namesOfMountPoints(const Descriptor& mounts);

// Makes links of the entries over which something of these names may be mounted, so that the disk is asked what is
// there.
void doubtMountPoints(std::vector<FileTree::Entry>& entries, const FileNames& names);

} // namespace tessgen::standalone

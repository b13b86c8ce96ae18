// What tells that a folder is still the one that was listed, and holds what it held then.
//
// Threads: any.
#pragma once

#include "standalone/files/FileTree.hpp"

#include <array>
#include <cstdint>
#include <ctime>
#include <sys/stat.h>

namespace tessgen::standalone {

// Device, inode, and the seconds and nanoseconds of two times: when the content last changed, which a program can set
// back, and when the inode did, which none can.
using FolderStamp = std::array<std::uint64_t, 6>;

FolderStamp stampOf(const struct stat& status);

// Whether every change of the folder gives it another time of its inode. Not so on disks that have no such time (FAT),
// and on those that are written as a whole, where another one has the same times.
bool hasReliableTimestamps(const FolderStatus& status);

// Whether every user may list the folder, as long as it has this stamp.
bool isWorldReadable(const FolderStatus& status);

// How many seconds after `now` a change of the folder surely gives it another stamp; 0 or less: already. The clock of
// some disks goes in steps of two seconds (FAT), so a change may have the time of one that came up to so long before.
// `now` is taken before `status`.
double secondsUntilChangesShow(const struct stat& status, const timespec& now);

} // namespace tessgen::standalone

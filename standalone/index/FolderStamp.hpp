// Identity and timestamps of a folder, to detect a stale listing.
//
// Threads: any.
#pragma once

#include "standalone/files/RealFileTree.hpp"

#include <array>
#include <cstdint>
#include <ctime>
#include <sys/stat.h>

namespace tessgen::standalone {

// Device, inode, and seconds and nanoseconds of two times: when the content last changed, which a program can set back,
// and when the inode last changed, which no program can.
using FolderStamp = std::array<std::uint64_t, 6>;

[[nodiscard]] FolderStamp stampOf(const struct stat& status);

// Whether every change of the folder gives its inode another time. False for disks without such a time (FAT), and for
// disk images that are written as a whole, since a new image may repeat the times of the old one.
[[nodiscard]] bool hasReliableTimestamps(const FolderStatus& status);

// Whether every user may list the folder, for as long as it keeps its stamp.
[[nodiscard]] bool isWorldReadable(const FolderStatus& status);

// The seconds after `now` until any change of the folder is sure to give it another stamp; 0 or less: from now on. Some
// disks (FAT) have clock ticks of two seconds, and two changes within one tick leave the same timestamp.
// `now` is read before `status`.
[[nodiscard]] double secondsUntilChangesShow(const struct stat& status, const timespec& now);

} // namespace tessgen::standalone

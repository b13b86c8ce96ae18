#include "standalone/index/FolderStamp.hpp"

#include <algorithm>
#include <array>
#include <cstdint>
#include <linux/magic.h>

namespace tessgen::standalone {

FolderStamp stampOf(const struct stat& status) {
    const auto number = [](auto value) { return static_cast<std::uint64_t>(value); };
    return {number(status.st_dev),          number(status.st_ino),         number(status.st_mtim.tv_sec),
            number(status.st_mtim.tv_nsec), number(status.st_ctim.tv_sec), number(status.st_ctim.tv_nsec)};
}

bool hasReliableTimestamps(const FolderStatus& status) {
    constexpr auto unreliable = std::to_array<std::uint32_t>(
        {MSDOS_SUPER_MAGIC, EXFAT_SUPER_MAGIC, ISOFS_SUPER_MAGIC, SQUASHFS_MAGIC, EROFS_SUPER_MAGIC_V1});
    return std::find(unreliable.begin(), unreliable.end(), status.fileSystem) == unreliable.end()
           && status.inode.st_ctim.tv_sec != 0;
}

bool isWorldReadable(const FolderStatus& status) {
    constexpr auto readableByAll = S_IRUSR | S_IRGRP | S_IROTH;
    return (status.inode.st_mode & readableByAll) == readableByAll && status.hasNoAccessList;
}

double secondsUntilChangesShow(const struct stat& status, const timespec& now) {
    constexpr double longestTick = 2;
    constexpr double nanosecond = 1e-9;
    const auto until = [&now](const timespec& change) {
        return static_cast<double>(change.tv_sec) - static_cast<double>(now.tv_sec) + longestTick
               + static_cast<double>(change.tv_nsec - now.tv_nsec) * nanosecond;
    };
    return std::max(until(status.st_mtim), until(status.st_ctim));
}

} // namespace tessgen::standalone

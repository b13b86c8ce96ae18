#include "standalone/FolderStamp.hpp"

#include <algorithm>

namespace tessgen::standalone {

FolderStamp stampOf(const struct stat& status) {
    const auto number = [](auto value) { return static_cast<std::uint64_t>(value); };
    return {number(status.st_dev),          number(status.st_ino),         number(status.st_mtim.tv_sec),
            number(status.st_mtim.tv_nsec), number(status.st_ctim.tv_sec), number(status.st_ctim.tv_nsec)};
}

double secondsUntilChangesShow(const struct stat& status, const timespec& now) {
    constexpr double longestStep = 2;
    constexpr double nanosecond = 1e-9;
    const auto until = [&now](const timespec& change) {
        return static_cast<double>(change.tv_sec) - static_cast<double>(now.tv_sec) + longestStep
               + static_cast<double>(change.tv_nsec - now.tv_nsec) * nanosecond;
    };
    return std::max(until(status.st_mtim), until(status.st_ctim));
}

} // namespace tessgen::standalone

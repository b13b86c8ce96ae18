#include "standalone/files/ListingCheck.hpp"

#include "standalone/files/FileErrors.hpp"

#include <cerrno>
#include <chrono>
#include <sys/stat.h>
#include <thread>
#include <tuple>
#include <utility>

namespace tessgen::standalone {

namespace {

timespec timeOf(clockid_t clock, int (*read)(clockid_t, timespec*)) {
    timespec time{};
    read(clock, &time);
    return time;
}

double secondsBetween(const timespec& from, const timespec& to) {
    constexpr double nanosecond = 1e-9;
    return static_cast<double>(to.tv_sec - from.tv_sec) + static_cast<double>(to.tv_nsec - from.tv_nsec) * nanosecond;
}

bool isBefore(const timespec& a, const timespec& b) {
    return std::tie(a.tv_sec, a.tv_nsec) < std::tie(b.tv_sec, b.tv_nsec);
}

// The tick of the clock that left a timestamp, in seconds. Disks with a coarse clock (FAT: two seconds) are known by
// their round numbers; the others take the system's.
double tickOf(const timespec& stamp) {
    constexpr long round = 10'000'000;
    constexpr double coarseTick = 2;
    const timespec none{};
    return stamp.tv_nsec % round == 0 ? coarseTick
                                      : 2 * secondsBetween(none, timeOf(CLOCK_REALTIME_COARSE, clock_getres));
}

} // namespace

void ListingCheck::start() {
    start_ = timeOf(CLOCK_REALTIME, clock_gettime);
}

bool ListingCheck::isUnchanged(int folder, const std::string& path) {
    struct stat status {};
    if (fstat(folder, &status) != 0) {
        throw DiskError(errno, path);
    }
    const auto& change = isBefore(status.st_mtim, status.st_ctim) ? status.st_ctim : status.st_mtim;
    const auto before = std::exchange(change_, change);
    const double age = secondsBetween(change, start_);
    const double tick = tickOf(change);
    // A timestamp in the future says nothing but that no change followed, which would have set it back.
    const bool isSame = before && !isBefore(*before, change) && !isBefore(change, *before);
    return age > tick || (isSame && age < -tick);
}

void ListingCheck::wait() const {
    const double tick = tickOf(*change_);
    const double left = tick - secondsBetween(*change_, timeOf(CLOCK_REALTIME, clock_gettime));
    if (left > 0 && left <= 2 * tick) {
        std::this_thread::sleep_for(std::chrono::duration<double>(left));
    }
}

} // namespace tessgen::standalone

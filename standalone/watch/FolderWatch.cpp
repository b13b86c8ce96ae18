#include "standalone/watch/FolderWatch.hpp"

#include "standalone/text/PathText.hpp"

#include <algorithm>
#include <cerrno>
#include <climits>
#include <fcntl.h>
#include <iterator>
#include <linux/magic.h>
#include <sys/epoll.h>
#include <sys/inotify.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <sys/vfs.h>
#include <unistd.h>

namespace tessgen::standalone {

namespace {

constexpr std::uint32_t goneMask = IN_DELETE_SELF | IN_MOVE_SELF | IN_UNMOUNT | IN_IGNORED;
constexpr std::uint32_t entryMask = IN_CREATE | IN_DELETE | IN_MOVED_FROM | IN_MOVED_TO;
// IN_MASK_ADD: a folder that has another path keeps its watch.
constexpr std::uint32_t watchMask =
    entryMask | IN_DELETE_SELF | IN_MOVE_SELF | IN_ONLYDIR | IN_DONT_FOLLOW | IN_MASK_ADD;
// What costs most to watch, since the system then marks each entry.
constexpr std::uint32_t contentMask = IN_ATTRIB | IN_CLOSE_WRITE;

Descriptor opened(int descriptor, const char* what) {
    if (descriptor < 0) {
        throw CannotWatch(errno, std::generic_category(), what);
    }
    return Descriptor(descriptor);
}

void addTo(const Descriptor& ready, const Descriptor& source, std::uint32_t events) {
    epoll_event event{};
    event.events = events;
    event.data.fd = source.get();
    if (epoll_ctl(ready.get(), EPOLL_CTL_ADD, source.get(), &event) != 0) {
        throw CannotWatch(errno, std::generic_category(), "epoll");
    }
}

Descriptor openMounts() {
    return opened(open(mountsFile, O_RDONLY | O_CLOEXEC), mountsFile);
}

// Readable when there are changes in the queue, or the mounts are others.
Descriptor readyWith(const Descriptor& queue, const Descriptor& mounts) {
    Descriptor ready = opened(epoll_create1(EPOLL_CLOEXEC), "epoll");
    addTo(ready, queue, EPOLLIN);
    addTo(ready, mounts, EPOLLPRI);
    return ready;
}

// Disks of this machine alone, on which every change passes through its system. An overlay counts: changing the
// folders that it lies over is not allowed while it is mounted. True, too, when nothing that can be watched is there.
bool isTrustedDisk(const std::string& folder) {
    constexpr auto trusted = std::to_array<std::uint32_t>(
        {EXT4_SUPER_MAGIC, XFS_SUPER_MAGIC, BTRFS_SUPER_MAGIC, F2FS_SUPER_MAGIC, TMPFS_MAGIC, RAMFS_MAGIC,
         OVERLAYFS_SUPER_MAGIC, REISERFS_SUPER_MAGIC, SQUASHFS_MAGIC, ISOFS_SUPER_MAGIC, EROFS_SUPER_MAGIC_V1});
    struct statfs disk {};
    if (statfs(folder.c_str(), &disk) != 0) {
        return errno == ENOENT || errno == ENOTDIR || errno == EACCES;
    }
    return std::find(trusted.begin(), trusted.end(), static_cast<std::uint32_t>(disk.f_type)) != trusted.end();
}

// For a folder that has no watch.
std::optional<NotWatched> reasonOf(int error, const std::string& folder) {
    struct stat status {};
    switch (error) {
    case ENOENT:
        return std::nullopt;
    case ENOTDIR: // a file counts as none
        return lstat(folder.c_str(), &status) == 0 && S_ISLNK(status.st_mode) ? std::optional(NotWatched::link)
                                                                              : std::nullopt;
    case ENOSPC:
    case ENOMEM:
        return NotWatched::limit;
    default:
        return NotWatched::access;
    }
}

} // namespace

bool tellsContent(std::string_view folder) {
    const auto slash = folder.rfind('/');
    return !isPackageClassOrPrivate(folder.substr(slash + 1)) || !tellsContent(folder.substr(0, slash));
}

FolderWatch::FolderWatch()
    : queue_(opened(inotify_init1(IN_NONBLOCK | IN_CLOEXEC), "inotify")), mounts_(openMounts()),
      ready_(readyWith(queue_, mounts_)), mountsToWaitFor_(openMounts()),
      readyToWaitFor_(readyWith(queue_, mountsToWaitFor_)), mountNames_(namesOfMountPoints(mounts_)) {}

std::optional<NotWatched> FolderWatch::watch(const std::string& folder) {
    if (folder.size() >= PATH_MAX) { // may lie below any number of others
        return NotWatched::access;
    }
    return watchIfThere(watches_.at(folder)).notWatched;
}

FolderWatch::Watched FolderWatch::watchIfThere(Watches::Entry& folder) {
    if (folder.value) {
        return {true, {}};
    }
    if (folder.above != nullptr) { // first, so that nothing below can be exchanged unseen
        if (const auto watched = watchIfThere(*folder.above); !watched.isThere) {
            return watched;
        }
    }
    const bool mayBeMounted = mayBeMountPoint(*folder.path);
    if (mayBeMounted && !isTrustedDisk(*folder.path)) {
        return {false, NotWatched::disk};
    }
    // The folder above a mount point is not told of its rights.
    return add(folder, mayBeMounted || tellsContent(*folder.path) ? watchMask | contentMask : watchMask);
}

// If it is none, it is on the same disk as the folder above.
bool FolderWatch::mayBeMountPoint(const std::string& folder) const {
    return folder == "/" || mountNames_.contains(folder.substr(folder.rfind('/') + 1));
}

FolderWatch::Watched FolderWatch::add(Watches::Entry& folder, std::uint32_t mask) {
    const int watch = inotify_add_watch(queue_.get(), folder.path->c_str(), mask);
    if (watch < 0) {
        return {false, reasonOf(errno, *folder.path)};
    }
    folders_.emplace(watch, &folder);
    folder.value = watch;
    return {true, {}};
}

void FolderWatch::forget(std::string_view path) {
    watches_.erase(path, [this](const Watches::Entry& folder) {
        if (!folder.value) {
            return;
        }
        auto [one, end] = folders_.equal_range(*folder.value);
        const bool isOnly = std::next(one) == end;
        while (one->second != &folder) {
            ++one;
        }
        folders_.erase(one);
        if (isOnly) {
            inotify_rm_watch(queue_.get(), *folder.value);
        }
    });
}

void FolderWatch::clear() {
    for (const auto& [watch, folder] : folders_) {
        inotify_rm_watch(queue_.get(), watch);
    }
    folders_.clear();
    watches_.clear();
    readQueue([](int, std::uint32_t, std::string_view) {});
    mountNames_ = namesOfMountPoints(mounts_);
}

// What is queued while it reads is left for the next call, since that may go on for ever.
void FolderWatch::readQueue(const std::function<void(int watch, std::uint32_t mask, std::string_view name)>& visit) {
    alignas(inotify_event) std::array<char, 65536> block; // NOLINT(*-member-init): filled by the system
    int left = 0;
    if (ioctl(queue_.get(), FIONREAD, &left) != 0) {
        throw std::system_error(errno, std::generic_category(), "inotify");
    }
    while (left > 0) {
        const auto size = read(queue_.get(), block.data(), block.size());
        if (size < 0) {
            throw std::system_error(errno, std::generic_category(), "inotify");
        }
        for (long place = 0; place < size;) {
            const auto& event = *reinterpret_cast<const inotify_event*>(&block[static_cast<std::size_t>(place)]);
            visit(event.wd, event.mask, event.len == 0 ? std::string_view() : std::string_view(event.name));
            place += static_cast<long>(sizeof event + event.len);
        }
        left -= static_cast<int>(size);
    }
}

FolderWatch::Changes FolderWatch::take() {
    std::array<epoll_event, 2> events{};
    int count = 0;
    do {
        count = epoll_wait(ready_.get(), events.data(), events.size(), 0);
    } while (count < 0 && errno == EINTR);
    if (count < 0) {
        throw std::system_error(errno, std::generic_category(), "epoll");
    }
    Changes changes;
    for (int i = 0; i < count; ++i) {
        if (events[static_cast<std::size_t>(i)].data.fd == mounts_.get()) {
            changes.areMountsOther = true;
        } else {
            readQueue(
                [&](int watch, std::uint32_t mask, std::string_view name) { addChange(watch, mask, name, changes); });
        }
    }
    return changes;
}

void FolderWatch::addChange(int watch, std::uint32_t mask, std::string_view name, Changes& changes) {
    using What = FolderChange::What;
    if ((mask & IN_Q_OVERFLOW) != 0) {
        changes.isQueueLost = true;
        return;
    }
    const bool areOtherRightsOfFile = (mask & IN_ATTRIB) != 0 && !name.empty() && (mask & IN_ISDIR) == 0;
    const What what = (mask & IN_CLOSE_WRITE) != 0 || areOtherRightsOfFile ? What::content
                      : name.empty() || (mask & goneMask) != 0             ? What::folder
                                                                           : What::entry;
    std::vector<std::string> paths;
    for (auto [one, end] = folders_.equal_range(watch); one != end; ++one) {
        paths.push_back(*one->second->path);
    }
    for (const std::string& path : paths) {
        changes.list.push_back({what, path, std::string(name)});
        if (what == What::folder) {
            forget(path);
        } else if (what == What::entry) {
            forget(joinPath(path, name));
        }
    }
}

} // namespace tessgen::standalone

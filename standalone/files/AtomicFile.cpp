#include "standalone/files/AtomicFile.hpp"

#include "standalone/files/RealFileTree.hpp"

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <cstdio>
#include <fcntl.h>
#include <filesystem>
#include <random>
#include <stdexcept>
#include <sys/file.h>
#include <system_error>
#include <unistd.h>

namespace tessgen::standalone {

namespace {

constexpr std::string_view prefix = ".kelwhich-new-";
constexpr std::size_t bufferSize = std::size_t{1} << 18U;

std::string folderOf(const std::string& path) {
    const auto separator = path.rfind('/');
    return separator == std::string::npos ? "./" : path.substr(0, separator + 1);
}

// A new hidden path beside `target`. Its name does not contain the target's, which may be as long as names can be.
std::string hiddenPathBeside(const std::string& target) {
    return folderOf(target).append(prefix) + std::to_string(std::random_device()());
}

bool isHiddenName(std::string_view name) {
    return name.starts_with(prefix) && name.size() > prefix.size()
           && name.find_first_not_of("0123456789", prefix.size()) == std::string_view::npos;
}

// False when another process holds the lock, or removed the file as a leftover. Never waits: the process may be another
// user's. On a disk without locks no process removes leftovers, so a failing lock does not matter.
bool lock(int descriptor) {
    while (flock(descriptor, LOCK_EX | LOCK_NB) != 0) {
        if (errno == EWOULDBLOCK) {
            return false;
        }
        if (errno != EINTR) {
            break;
        }
    }
    struct stat status {};
    return fstat(descriptor, &status) != 0 || status.st_nlink != 0;
}

// Whether `path` is still the open file itself.
bool isAt(int descriptor, const std::string& path) {
    struct stat open {};
    struct stat named {};
    return fstat(descriptor, &open) == 0 && lstat(path.c_str(), &named) == 0 && S_ISREG(named.st_mode)
           && open.st_dev == named.st_dev && open.st_ino == named.st_ino;
}

// Removes `path` unless a process is writing it. A leftover may have the mode of a read-only file already; some disks
// lock only what is open for writing.
void removeLeftover(const std::string& path) {
    constexpr int flags = O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC;
    Descriptor file(open(path.c_str(), O_RDWR | flags));
    if (!file.isOpen()) {
        file = Descriptor(open(path.c_str(), O_RDONLY | flags));
    }
    if (file.isOpen() && flock(file.get(), LOCK_EX | LOCK_NB) == 0 && isAt(file.get(), path)) {
        unlink(path.c_str());
    }
}

// Leftovers are harmless, so errors are ignored.
void removeLeftovers(const std::string& folder) {
    try {
        for (const auto& entry :
             RealFileTree().entries(folder, {isHiddenName}).value_or(std::vector<FileTree::Entry>())) {
            removeLeftover(folder + entry.name);
        }
    } catch (const std::system_error&) { // NOLINT(bugprone-empty-catch): a folder may be writable and unreadable
    }
}

// Without this, a power failure may bring the old file back. That one is complete too, so errors are ignored.
void syncFolder(const std::string& folder) {
    const Descriptor descriptor(open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (descriptor.isOpen()) {
        fsync(descriptor.get());
    }
}

// False, with errno, when `to` exists or the move failed. Some disks lack hard links, others this kind of rename.
bool moveIfAbsent(const std::string& from, const std::string& to) {
    if (link(from.c_str(), to.c_str()) == 0) {
        unlink(from.c_str());
        return true;
    }
    return errno != EEXIST && renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), RENAME_NOREPLACE) == 0;
}

const char* adviceOnWriting(int error) {
    switch (error) {
    case ENOSPC:
    case EDQUOT:
        return "; the disk is full: make room there, or write to another disk";
    case EFBIG:
        return "; files may not grow that large here: raise the limit (ulimit -f)";
    case ENOENT:
    case ENOTDIR:
        return "; its folder is not there: make it, or write elsewhere";
    case EACCES:
    case EROFS:
        return "; its folder cannot be written to: change its permissions, or write elsewhere";
    default:
        return "";
    }
}

std::string whyNotWritten(int error) {
    return std::generic_category().message(error) + adviceOnWriting(error);
}

[[noreturn]] void failWriting(const std::string& target, const std::string& cause) {
    throw std::runtime_error(target + ": cannot be written, and is as it was: " + cause);
}

} // namespace

std::optional<struct stat> requireReplaceable(const std::string& target, const Replaceable& replaceable) {
    struct stat status {};
    if (stat(target.c_str(), &status) != 0) {
        if (errno != ENOENT) {
            failWriting(target, whyNotWritten(errno));
        }
        return std::nullopt;
    }
    if (!S_ISREG(status.st_mode)) {
        throw std::runtime_error(target + ": is not a regular file; name the file to be written");
    }
    if (status.st_size != 0 && !replaceable.recognises(target)) {
        const bool isReadable = access(target.c_str(), R_OK) == 0;
        throw std::runtime_error(target + (isReadable ? ": is not " : ": cannot be read, and so may not be ")
                                 + std::string(replaceable.kind) + "; name another file with "
                                 + std::string(replaceable.key) + ", or remove this one first");
    }
    return status;
}

AtomicFile::AtomicFile(const std::string& target, const Replaceable& replaceable)
    : target_(target), replaceable_(&replaceable) {
    struct stat status {};
    if (lstat(target.c_str(), &status) == 0) {
        std::error_code error;
        const auto real = std::filesystem::canonical(target, error).string();
        if (error == std::errc::no_such_file_or_directory) {
            throw std::runtime_error(target + ": is a link that leads nowhere; make its target or remove it");
        }
        if (error) {
            fail(error.value());
        }
        target_ = real;
    } else if (errno != ENOENT) {
        fail(errno);
    }
    const bool isThere = requireReplaceable(target_, replaceable).has_value();
    removeLeftovers(folderOf(target_));
    // Never more readable than the old file, from the start.
    create(isThere ? S_IRUSR | S_IWUSR : S_IRUSR | S_IWUSR | S_IRGRP | S_IROTH);
}

AtomicFile::~AtomicFile() {
    if (!path_.empty()) {
        unlink(path_.c_str());
    }
}

void AtomicFile::create(unsigned mode) {
    for (;;) {
        path_ = hiddenPathBeside(target_);
        descriptor_ = Descriptor(open(path_.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, mode));
        if (!descriptor_.isOpen() && errno != EEXIST) {
            fail(errno);
        }
        if (descriptor_.isOpen() && lock(descriptor_.get())) {
            return;
        }
        if (descriptor_.isOpen()) {
            unlink(path_.c_str());
        }
    }
}

void AtomicFile::append(std::string_view bytes) {
    buffer_ += bytes;
    if (buffer_.size() >= bufferSize) {
        flush();
    }
}

void AtomicFile::overwrite(std::uint64_t position, std::string_view bytes) {
    flush();
    write(position, bytes);
}

std::string AtomicFile::read(std::uint64_t position, std::size_t length) {
    flush();
    std::string bytes(length, '\0');
    for (std::size_t done = 0; done < length;) {
        const auto got =
            pread(descriptor_.get(), bytes.data() + done, length - done, static_cast<off_t>(position + done));
        if (got == 0 || (got < 0 && errno != EINTR)) {
            fail(got == 0 ? EIO : errno);
        }
        done += got < 0 ? 0 : static_cast<std::size_t>(got);
    }
    return bytes;
}

void AtomicFile::flush() {
    write(written_, buffer_);
    written_ += buffer_.size();
    buffer_.clear();
}

void AtomicFile::write(std::uint64_t position, std::string_view bytes) const {
    while (!bytes.empty()) {
        const auto done = pwrite(descriptor_.get(), bytes.data(), bytes.size(), static_cast<off_t>(position));
        if (done < 0 && errno != EINTR) {
            fail(errno);
        }
        const auto count = done < 0 ? 0 : static_cast<std::size_t>(done);
        position += count;
        bytes.remove_prefix(count);
    }
}

void AtomicFile::copyOwnerAndMode(const struct stat& old) const {
    auto mode = old.st_mode & 07777U;
    constexpr auto unchanged = static_cast<uid_t>(-1);
    if (fchown(descriptor_.get(), old.st_uid, old.st_gid) != 0
        && fchown(descriptor_.get(), unchanged, old.st_gid) != 0) {
        mode = (mode & ~070U) | ((mode & 07U) << 3U); // our group then has the permissions of others
    }
    if (fchmod(descriptor_.get(), mode) != 0) {
        fail(errno);
    }
}

void AtomicFile::sync() {
    flush();
    if (fsync(descriptor_.get()) != 0) {
        fail(errno);
    }
}

void AtomicFile::commit() {
    if (const auto old = requireReplaceable(target_, *replaceable_)) {
        copyOwnerAndMode(*old);
    }
    sync();
    if (rename(path_.c_str(), target_.c_str()) != 0) {
        fail(errno);
    }
    path_.clear();
    syncFolder(folderOf(target_));
}

bool AtomicFile::commitIfAbsent() {
    sync();
    if (!moveIfAbsent(path_, target_)) {
        if (errno == EEXIST) {
            return false;
        }
        fail(errno);
    }
    path_.clear();
    syncFolder(folderOf(target_));
    return true;
}

void AtomicFile::fail(const std::string& cause) const {
    failWriting(target_, cause);
}

void AtomicFile::fail(int error) const {
    fail(whyNotWritten(error));
}

} // namespace tessgen::standalone

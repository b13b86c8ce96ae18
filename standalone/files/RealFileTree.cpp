#include "standalone/files/RealFileTree.hpp"

#include "standalone/files/Descriptor.hpp"
#include "standalone/files/FileErrors.hpp"
#include "standalone/files/ListingCheck.hpp"
#include "standalone/text/PathText.hpp"

#include <algorithm>
#include <array>
#include <cerrno>
#include <climits>
#include <cstddef>
#include <cstdlib>
#include <dirent.h>
#include <fcntl.h>
#include <memory>
#include <span>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/vfs.h>
#include <sys/xattr.h>
#include <unistd.h>

namespace tessgen::standalone {

namespace {

using Kind = FileTree::Kind;

// Calls `visit` for every entry of an open folder. Returns how many reads held entries. Not readdir, which allocates
// and asks for the folder's status each time. Errors: DiskError.
template <typename Visit>
int forEachEntry(const Descriptor& folder, const std::string& path, Visit visit) {
    alignas(dirent64) std::array<char, 32768> block; // NOLINT(*-member-init): filled by the system
    for (int reads = 0;; ++reads) {
        const auto size = syscall(SYS_getdents64, folder.get(), block.data(), block.size());
        if (size < 0 && errno != ENOENT) { // a folder removed in the meantime holds nothing
            throw DiskError(errno, path);
        }
        if (size <= 0) {
            return reads;
        }
        for (long place = 0; place < size;) {
            const auto& entry = *reinterpret_cast<const dirent64*>(&block[static_cast<std::size_t>(place)]);
            visit(entry);
            place += entry.d_reclen;
        }
    }
}

// No path on the disk holds a NUL; the system would take the text before it for the path.
bool holdsNUL(const std::string& path) {
    return path.find('\0') != std::string::npos;
}

Kind kindOfMode(mode_t mode) {
    return S_ISREG(mode) ? Kind::file : S_ISDIR(mode) ? Kind::folder : S_ISLNK(mode) ? Kind::link : Kind::other;
}

Kind kindOfEntry(const Descriptor& folder, const dirent64& entry) {
    switch (entry.d_type) {
    case DT_REG:
        return Kind::file;
    case DT_DIR:
        return Kind::folder;
    case DT_LNK:
        return Kind::link;
    case DT_UNKNOWN: { // some file systems list no kinds
        struct stat status {};
        const int failed = fstatat(folder.get(), entry.d_name, &status, AT_SYMLINK_NOFOLLOW);
        return failed != 0 ? Kind::link : kindOfMode(status.st_mode); // `kindOf` then reports the error
    }
    default:
        return Kind::other;
    }
}

// False, with errno set, when the system fails.
bool readStatus(int folder, FolderStatus& status) {
    struct statfs disk {};
    if (fstat(folder, &status.inode) != 0 || fstatfs(folder, &disk) != 0) {
        return false;
    }
    status.fileSystem = static_cast<std::uint32_t>(disk.f_type);
    // A disk with another kind of access list fails with another error.
    status.hasNoAccessList = fgetxattr(folder, "system.posix_acl_access", nullptr, 0) < 0 && errno == ENODATA;
    return true;
}

bool isTooLong(std::size_t pathSize) {
    return pathSize >= PATH_MAX;
}

// Nothing is there, a link leads nowhere, or a component is longer than any name on the disk. A path that is too long
// as a whole may exist all the same: no system call can find out.
bool isAbsent(int error, const std::string& path) {
    return error == ENOENT || error == ENOTDIR || error == ELOOP || (error == ENAMETOOLONG && !isTooLong(path.size()));
}

// For use right after a call that failed: returns when `path` is absent.
// Errors: everything else.
void failUnlessAbsent(const std::string& path) {
    if (const int error = errno; !isAbsent(error, path)) {
        throw DiskError(error, path);
    }
}

// Whether a folder in an open one can be listed and holds none of these files, found out without listing it. False,
// too, when that is unknown. Where the disk does not tell upper from lower case, it may find other files than are
// listed; that it finds none is certain.
bool holdsNone(const Descriptor& above, const std::string& folder, std::span<const std::string> files) {
    if (faccessat(above.get(), folder.c_str(), R_OK, AT_EACCESS) != 0) {
        return false;
    }
    std::string path;
    return std::all_of(files.begin(), files.end(), [&](const std::string& file) {
        joinPath(path, folder, file);
        struct stat status {};
        return fstatat(above.get(), path.c_str(), &status, AT_SYMLINK_NOFOLLOW) != 0 && errno == ENOENT;
    });
}

// Adds the wanted entries of an open folder. Returns how many reads held entries.
// Errors: DiskError.
int addEntries(const Descriptor& opened, const std::string& folder, const EntryFilter& wanted,
               std::vector<FileTree::Entry>& found) {
    constexpr std::size_t usualCount = 32;
    found.reserve(usualCount);
    constexpr std::size_t few = 4; // looking for more files takes longer than listing the folder
    const bool areFew = !wanted.files.empty() && wanted.files.size() <= few;
    return forEachEntry(opened, folder, [&](const dirent64& entry) {
        const std::string_view name = entry.d_name;
        if (name == "." || name == ".." || !wanted.accepts(name)) {
            return;
        }
        if (isTooLong(folder.size() + (folder.ends_with('/') ? 0 : 1) + name.size())) {
            throw DiskError(ENAMETOOLONG, joinPath(folder, name));
        }
        const auto kind = kindOfEntry(opened, entry);
        const bool mayBeLeftOut = kind == Kind::folder && areFew && isClassOrPrivate(name);
        if (mayBeLeftOut && holdsNone(opened, entry.d_name, wanted.files)) {
            return;
        }
        found.push_back({std::string(name), kind});
    });
}

struct FreeText {
    void operator()(char* text) const noexcept { std::free(text); } // NOLINT: the C library allocates it
};

} // namespace

std::optional<std::vector<FileTree::Entry>> RealFileTree::list(const std::string& folder, const EntryFilter& wanted,
                                                               FolderStatus* status) const {
    if (holdsNUL(folder)) {
        return std::nullopt;
    }
    constexpr int mostTries = 5;
    ListingCheck check;
    for (int tries = 0; tries < mostTries; ++tries) {
        check.start();
        const PathAt walk = walkFrom(top_, folder);
        const Descriptor opened(openat(walk.folder, walk.path, O_RDONLY | O_DIRECTORY | O_NONBLOCK | O_CLOEXEC));
        if (!opened.isOpen()) {
            failUnlessAbsent(folder);
            return std::nullopt;
        }
        if (status != nullptr && !readStatus(opened.get(), *status)) {
            throw DiskError(errno, folder);
        }
        std::vector<Entry> found;
        const int reads = addEntries(opened, folder, wanted, found);
        if (reads <= 1 || check.isUnchanged(opened.get(), folder)) {
            return found;
        }
        check.wait();
    }
    throw DiskError(EAGAIN, folder);
}

std::optional<std::vector<FileTree::Entry>> RealFileTree::entries(const std::string& folder,
                                                                  const EntryFilter& wanted) const {
    return list(folder, wanted, nullptr);
}

std::optional<std::vector<FileTree::Entry>>
RealFileTree::entriesAndStatus(const std::string& folder, const EntryFilter& wanted, FolderStatus& status) const {
    return list(folder, wanted, &status);
}

std::optional<Kind> RealFileTree::kindOf(const std::string& path) const {
    if (holdsNUL(path)) {
        return std::nullopt;
    }
    struct stat status {};
    const PathAt walk = walkFrom(top_, path);
    if (fstatat(walk.folder, walk.path, &status, 0) != 0) {
        failUnlessAbsent(path);
        return std::nullopt;
    }
    return kindOfMode(status.st_mode);
}

bool isLinkCircle(const std::string& path) {
    struct stat status {};
    return !holdsNUL(path) && stat(path.c_str(), &status) != 0 && errno == ELOOP;
}

std::optional<std::string> realPath(const std::string& path) {
    if (holdsNUL(path)) {
        return std::nullopt;
    }
    const std::unique_ptr<char, FreeText> real(realpath(path.c_str(), nullptr));
    if (!real) {
        failUnlessAbsent(path);
        return std::nullopt;
    }
    return real.get();
}

} // namespace tessgen::standalone

#include "standalone/files/FileTree.hpp"

#include "standalone/text/PathText.hpp"

#include <array>
#include <cerrno>
#include <climits>
#include <cstddef>
#include <cstdlib>
#include <dirent.h>
#include <fcntl.h>
#include <memory>
#include <stdexcept>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/vfs.h>
#include <sys/xattr.h>
#include <system_error>
#include <unistd.h>

namespace tessgen::standalone {

namespace {

using Kind = FileTree::Kind;

// A folder that is open for reading, or could not be opened.
class OpenFolder {
public:
    explicit OpenFolder(const PathAt& walk)
        : descriptor_(openat(walk.folder, walk.path, O_RDONLY | O_DIRECTORY | O_NONBLOCK | O_CLOEXEC)) {}
    OpenFolder(const OpenFolder&) = delete;
    OpenFolder& operator=(const OpenFolder&) = delete;
    ~OpenFolder() {
        if (isOpen()) {
            close(descriptor_);
        }
    }

    bool isOpen() const { return descriptor_ >= 0; }
    int descriptor() const { return descriptor_; }

    // Hands out every entry. Errors: the number of the system's, or 0. Not readdir: it allocates for each folder, and
    // asks what kind of file the folder is.
    template <typename Visit>
    int forEach(Visit visit) const {
        alignas(dirent64) std::array<char, 32768> block; // NOLINT(*-member-init): filled by the system
        while (true) {
            const auto size = syscall(SYS_getdents64, descriptor_, block.data(), block.size());
            if (size <= 0) {
                // A folder that was removed meanwhile holds nothing.
                return size == 0 || errno == ENOENT ? 0 : errno;
            }
            for (long place = 0; place < size;) {
                const auto& entry = *reinterpret_cast<const dirent64*>(&block[static_cast<std::size_t>(place)]);
                visit(entry);
                place += entry.d_reclen;
            }
        }
    }

private:
    int descriptor_;
};

// Tells what can be done as well, which `std::system_error` by itself has no place for.
class DiskError final : public std::system_error {
public:
    DiskError(int error, const std::string& path)
        : std::system_error(error, std::generic_category()),
          line_(shownPath(path) + ": cannot be read: " + code().message() + std::string(adviceOn(error))) {}
    const char* what() const noexcept override { return line_.what(); }

private:
    std::runtime_error line_; // for its text, which is copied without a throw
};

// No path of the disk holds a NUL; the system would take what stands before it for the path.
bool holdsNUL(const std::string& path) {
    return path.find('\0') != std::string::npos;
}

Kind kindOfMode(mode_t mode) {
    return S_ISREG(mode) ? Kind::file : S_ISDIR(mode) ? Kind::folder : S_ISLNK(mode) ? Kind::link : Kind::other;
}

Kind kindOfEntry(const OpenFolder& folder, const dirent64& entry) {
    switch (entry.d_type) {
    case DT_REG:
        return Kind::file;
    case DT_DIR:
        return Kind::folder;
    case DT_LNK:
        return Kind::link;
    case DT_UNKNOWN: { // some file systems do not tell in a listing
        struct stat status {};
        const int failed = fstatat(folder.descriptor(), entry.d_name, &status, AT_SYMLINK_NOFOLLOW);
        return failed != 0 ? Kind::link : kindOfMode(status.st_mode); // what a link leads to is looked at, and told
    }
    default:
        return Kind::other;
    }
}

// False, with errno, when the system does not tell.
bool readStatus(int folder, FolderStatus& status) {
    struct statfs disk {};
    if (fstat(folder, &status.inode) != 0 || fstatfs(folder, &disk) != 0) {
        return false;
    }
    status.fileSystem = static_cast<std::uint32_t>(disk.f_type);
    // A disk with access lists of another kind says that it knows none of these.
    status.hasNoAccessList = fgetxattr(folder, "system.posix_acl_access", nullptr, 0) < 0 && errno == ENODATA;
    return true;
}

bool isTooLong(std::size_t pathSize) {
    return pathSize >= PATH_MAX;
}

// Nothing is there, or a link leads nowhere, or a part of the path is longer than any name on the disk can be. A path
// that is too long as a whole may well be there: no call of the system can tell.
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

struct FreeText {
    void operator()(char* text) const noexcept { std::free(text); } // NOLINT: the C library allocates it
};

} // namespace

std::string shownPath(const std::string& path) {
    constexpr std::size_t longest = PATH_MAX + NAME_MAX; // a file in a folder that can be opened
    return path.size() <= longest ? path : "a path of " + std::to_string(path.size()) + " bytes";
}

std::string_view adviceOn(int error) {
    switch (error) {
    case EACCES:
    case EPERM:
        return "; give the right to read it, or leave it out of the installation";
    case ELOOP:
        return "; mend the links";
    case ENAMETOOLONG:
        return "; move it to where its path is shorter";
    case EMFILE:
    case ENFILE:
        return "; raise the limit of open files (ulimit -n)";
    case EIO:
        return "; check the disk";
    default:
        return "";
    }
}

std::optional<std::vector<FileTree::Entry>> entriesAndStatus(const std::string& folder, const FileTree::Filter& wanted,
                                                             FolderStatus* status) {
    if (holdsNUL(folder)) {
        return std::nullopt;
    }
    const OpenFolder opened(wanted.walkTo(folder));
    if (!opened.isOpen()) {
        failUnlessAbsent(folder);
        return std::nullopt;
    }
    if (status != nullptr && !readStatus(opened.descriptor(), *status)) {
        throw DiskError(errno, folder);
    }
    std::vector<FileTree::Entry> found;
    constexpr std::size_t usualCount = 32;
    found.reserve(usualCount);
    const int error = opened.forEach([&](const dirent64& entry) {
        const std::string_view name = entry.d_name;
        if (name == "." || name == ".." || !wanted(name)) {
            return;
        }
        if (isTooLong(folder.size() + (folder.ends_with('/') ? 0 : 1) + name.size())) {
            throw DiskError(ENAMETOOLONG, joinPath(folder, name));
        }
        found.push_back({std::string(name), kindOfEntry(opened, entry)});
    });
    if (error != 0) {
        throw DiskError(error, folder);
    }
    return found;
}

std::optional<std::vector<FileTree::Entry>> RealFileTree::entries(const std::string& folder,
                                                                  const Filter& wanted) const {
    return entriesAndStatus(folder, wanted, nullptr);
}

std::optional<Kind> RealFileTree::kindOf(const std::string& path) const {
    if (holdsNUL(path)) {
        return std::nullopt;
    }
    struct stat status {};
    if (stat(path.c_str(), &status) != 0) {
        failUnlessAbsent(path);
        return std::nullopt;
    }
    return kindOfMode(status.st_mode);
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

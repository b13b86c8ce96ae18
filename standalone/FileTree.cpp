#include "standalone/FileTree.hpp"

#include <cerrno>
#include <dirent.h>
#include <fcntl.h>
#include <memory>
#include <sys/stat.h>
#include <system_error>

namespace tessgen::standalone {

namespace {

using Kind = FileTree::Kind;

struct CloseFolder {
    void operator()(DIR* folder) const noexcept { closedir(folder); }
};

std::system_error failure(int error, const std::string& path) {
    return {error, std::generic_category(), path};
}

// No path of the disk holds a NUL; the system would take what stands before it for the path.
bool holdsNUL(const std::string& path) {
    return path.find('\0') != std::string::npos;
}

Kind kindOfMode(mode_t mode) {
    return S_ISREG(mode) ? Kind::file : S_ISDIR(mode) ? Kind::folder : S_ISLNK(mode) ? Kind::link : Kind::other;
}

Kind kindOfEntry(DIR* folder, const dirent& entry) {
    switch (entry.d_type) {
    case DT_REG:
        return Kind::file;
    case DT_DIR:
        return Kind::folder;
    case DT_LNK:
        return Kind::link;
    case DT_UNKNOWN: { // some file systems do not tell in a listing
        struct stat status {};
        const int failed = fstatat(dirfd(folder), entry.d_name, &status, AT_SYMLINK_NOFOLLOW);
        return failed != 0 ? Kind::link : kindOfMode(status.st_mode); // what a link leads to is looked at, and told
    }
    default:
        return Kind::other;
    }
}

// Nothing is there, or a link leads nowhere, or no disk could hold it.
bool isAbsent(int error) {
    return error == ENOENT || error == ENOTDIR || error == ELOOP || error == ENAMETOOLONG;
}

} // namespace

std::optional<std::vector<FileTree::Entry>> RealFileTree::entries(const std::string& folder,
                                                                  const Filter& wanted) const {
    if (holdsNUL(folder)) {
        return std::nullopt;
    }
    const std::unique_ptr<DIR, CloseFolder> opened(opendir(folder.c_str()));
    if (!opened) {
        const int error = errno;
        if (isAbsent(error)) {
            return std::nullopt;
        }
        throw failure(error, folder);
    }
    std::vector<Entry> found;
    while (true) {
        errno = 0;                                   // readdir tells the end from an error by it alone
        const dirent* entry = readdir(opened.get()); // NOLINT(concurrency-mt-unsafe): this DIR is ours alone
        if (entry == nullptr) {
            break;
        }
        const std::string_view name = entry->d_name;
        if (name != "." && name != ".." && wanted(name)) {
            found.push_back({std::string(name), kindOfEntry(opened.get(), *entry)});
        }
    }
    if (const int error = errno; error != 0) {
        throw failure(error, folder);
    }
    return found;
}

std::optional<Kind> RealFileTree::kindOf(const std::string& path) const {
    if (holdsNUL(path)) {
        return std::nullopt;
    }
    struct stat status {};
    if (stat(path.c_str(), &status) != 0) {
        const int error = errno;
        if (isAbsent(error)) {
            return std::nullopt;
        }
        throw failure(error, path);
    }
    return kindOfMode(status.st_mode);
}

} // namespace tessgen::standalone

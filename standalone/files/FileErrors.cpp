#include "standalone/files/FileErrors.hpp"

#include <cerrno>
#include <climits>
#include <cstddef>

namespace tessgen::standalone {

DiskError::DiskError(int error, const std::string& path)
    : std::system_error(error, std::generic_category()),
      line_(shownPath(path) + ": cannot be read: " + code().message() + std::string(adviceOn(error))) {}

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
    case EAGAIN:
        return "; it keeps changing: try again, or keep fewer files in it";
    case EIO:
        return "; check the disk";
    default:
        return "";
    }
}

} // namespace tessgen::standalone

#include "standalone/watch/WatchedFile.hpp"

#include "standalone/text/PathText.hpp"

#include <sys/stat.h>
#include <utility>

namespace tessgen::standalone {

FileStamp::FileStamp(std::string path) : path_(std::move(path)), last_(stamp()) {}

FileStamp::Stamp FileStamp::stamp() const {
    struct stat status {};
    return stat(path_.c_str(), &status) == 0 ? Stamp(stampOf(status)) : std::nullopt;
}

bool FileStamp::hasChanged() {
    const auto before = std::exchange(last_, stamp());
    return last_ != before;
}

void WatchedFile::note(const FolderChange& change) {
    const bool isWritten = change.what == FolderChange::What::content && joinPath(change.folder, change.name) == path_;
    isSure_ = isSure_ && !isWritten && !concerns(change, path_);
}

bool WatchedFile::hasChanged(FolderWatch& watch) {
    if (isSure_) {
        return false;
    }
    struct stat status {};
    const std::string folder = absolutePath("..", path_);
    isSure_ = isWatched_ = !watch.watch(folder) && tellsContent(folder)
                           && !(lstat(path_.c_str(), &status) == 0 && S_ISLNK(status.st_mode));
    return stamp_.hasChanged();
}

bool concerns(const FolderChange& change, const std::string& path) {
    if (change.what == FolderChange::What::content) {
        return false;
    }
    const std::string place =
        change.what == FolderChange::What::folder ? change.folder : joinPath(change.folder, change.name);
    return path == place || isBelow(path, place);
}

} // namespace tessgen::standalone

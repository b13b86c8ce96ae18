#include "cli/installation/InstallationWatch.hpp"

#include "standalone/manifest/ManifestFile.hpp"
#include "standalone/text/PathText.hpp"

#include <filesystem>
#include <sys/stat.h>
#include <system_error>
#include <utility>

namespace tessgen::cli {

namespace {

std::string manifestIn(const std::string& fileOrFolder) {
    std::error_code unknown;
    return std::filesystem::is_directory(fileOrFolder, unknown)
               ? standalone::joinPath(fileOrFolder, standalone::manifestName)
               : fileOrFolder;
}

std::optional<FileWatch> watchOf(const std::optional<std::string>& path) {
    return path ? std::optional<FileWatch>(*path) : std::nullopt;
}

} // namespace

FileWatch::FileWatch(std::string path) : path_(std::move(path)), last_(stamp()) {}

FileWatch::Stamp FileWatch::stamp() const {
    struct stat status {};
    return stat(path_.c_str(), &status) == 0 ? Stamp(standalone::stampOf(status)) : std::nullopt;
}

bool FileWatch::hasChanged() {
    const auto before = std::exchange(last_, stamp());
    return last_ != before;
}

InstallationWatch::InstallationWatch(const std::string& fileOrFolder)
    : manifest_(manifestIn(fileOrFolder)), installation_(standalone::readInstallation(fileOrFolder)),
      store_(watchOf(installation_.supportStore)), index_(watchOf(installation_.searchIndex)) {}

bool InstallationWatch::isDataReplaced() {
    const bool isStoreReplaced = store_ && store_->hasChanged();
    const bool isIndexReplaced = index_ && index_->hasChanged();
    return isStoreReplaced || isIndexReplaced;
}

bool InstallationWatch::isManifestChanged() {
    const bool isChanged = manifest_ && manifest_->hasChanged();
    if (isChanged) {
        manifest_.reset();
    }
    return isChanged;
}

} // namespace tessgen::cli

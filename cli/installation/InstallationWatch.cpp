#include "cli/installation/InstallationWatch.hpp"

#include "standalone/manifest/ManifestFile.hpp"
#include "standalone/text/PathText.hpp"

#include <filesystem>
#include <system_error>

namespace tessgen::cli {

namespace {

std::string manifestIn(const std::string& fileOrFolder) {
    std::error_code unknown;
    return std::filesystem::is_directory(fileOrFolder, unknown)
               ? standalone::joinPath(fileOrFolder, standalone::manifestName)
               : fileOrFolder;
}

std::optional<standalone::FileStamp> stampOf(const std::optional<std::string>& path) {
    return path ? std::optional<standalone::FileStamp>(*path) : std::nullopt;
}

} // namespace

InstallationWatch::InstallationWatch(const std::string& fileOrFolder)
    : manifest_(manifestIn(fileOrFolder)), installation_(standalone::readInstallation(fileOrFolder)),
      store_(stampOf(installation_.supportStore)), index_(stampOf(installation_.searchIndex)) {}

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

#include "cli/installation/ManifestLookup.hpp"

#include "cli/output/Console.hpp"
#include "standalone/manifest/ManifestFile.hpp"
#include "standalone/text/PathText.hpp"

#include <fmt/format.h>

#include <filesystem>
#include <stdexcept>
#include <string>
#include <string_view>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>
#include <utility>

namespace tessgen::cli {

namespace {

std::string nearestManifest() {
    std::error_code unknown;
    const auto start = std::filesystem::current_path(unknown);
    if (unknown) {
        throw std::runtime_error("the working folder cannot be determined: " + unknown.message()
                                 + "; name the installation with --installation");
    }
    for (auto folder = start;; folder = folder.parent_path()) {
        const auto manifest = folder / standalone::manifestName;
        std::error_code error; // also set when there is none
        const auto status = std::filesystem::symlink_status(manifest, error);
        if (!std::filesystem::status_known(status)) {
            throw std::runtime_error(
                fmt::format("{}: cannot be looked up: {}; name the installation with --installation", manifest.string(),
                            error.message()));
        }
        if (std::filesystem::exists(status)) {
            return manifest.string();
        }
        if (folder == folder.parent_path()) {
            throw std::runtime_error(
                fmt::format("no installation.json in {} or above; make one with: kelwhich init FOLDER; or go to a "
                            "folder that has one, name one with --installation, or set KELWHICH_INSTALLATION",
                            start.string()));
        }
    }
}

// By its mode: others than the owner and the members of the user's own group.
bool isWritableByOthers(const struct stat& file) {
    return (file.st_mode & S_IWOTH) != 0 || ((file.st_mode & S_IWGRP) != 0 && file.st_gid != getegid());
}

// Why another user may have put this manifest there, or what it leads to; empty when nobody else can have.
std::string_view distrustOf(const std::string& manifest) {
    struct stat file {};
    struct stat folder {};
    if (lstat(manifest.c_str(), &file) != 0 || stat(standalone::absolutePath("..", manifest).c_str(), &folder) != 0) {
        return ""; // nothing can be read there
    }
    const auto isTrusted = [](uid_t owner) { return owner == geteuid() || owner == 0; }; // root can do anything anyway
    if (!isTrusted(file.st_uid)) {
        return "belongs to another user";
    }
    if (!S_ISLNK(file.st_mode) && isWritableByOthers(file)) {
        return "can be written to by others";
    }
    if (!isTrusted(folder.st_uid) || isWritableByOthers(folder)) {
        return "lies in a folder that others can write to";
    }
    std::error_code dangling;
    return S_ISLNK(file.st_mode) ? distrustOf(std::filesystem::canonical(manifest, dangling).string()) : "";
}

FoundManifest lookUp(const Request& request) {
    if (request.installation) {
        return {*request.installation, ManifestSource::option};
    }
    auto named = environment("KELWHICH_INSTALLATION");
    if (!named.empty()) {
        return {std::move(named), ManifestSource::environment};
    }
    return {nearestManifest(), ManifestSource::nearest};
}

std::string_view distrustOf(const FoundManifest& found) {
    return found.source == ManifestSource::nearest ? distrustOf(found.path) : "";
}

} // namespace

FoundManifest findManifestAndSource(const Request& request) {
    static bool isReported = false;
    auto found = lookUp(request);
    if (const auto distrust = distrustOf(found);
        !distrust.empty() && !request.quiet && !std::exchange(isReported, true)) {
        reportNote(fmt::format("{} {}; if you trust it, name it with --installation", found.path, distrust));
    }
    return found;
}

void requireTrusted(const std::string& manifest) {
    if (const auto distrust = distrustOf(manifest); !distrust.empty()) {
        throw std::runtime_error(
            fmt::format("{}: {}, so it does not decide where to write; if you trust it, name it with "
                        "--installation",
                        manifest, distrust));
    }
}

std::string findManifestToWriteBy(const Request& request) {
    auto found = lookUp(request);
    if (found.source == ManifestSource::nearest) {
        requireTrusted(found.path);
    }
    return std::move(found.path);
}

std::string findManifest(const Request& request) {
    return findManifestAndSource(request).path;
}

std::string findStore(const Request& request) {
    if (!request.operands.empty()) {
        return request.operands.front();
    }
    const auto installation = standalone::readInstallation(findManifest(request));
    if (!installation.supportStore) {
        throw std::runtime_error(
            fmt::format("{}: has no key supportStore; name the file of a store", installation.manifest));
    }
    return *installation.supportStore;
}

std::string requireSearchIndex(const standalone::Installation& installation) {
    if (!installation.searchIndex) {
        throw std::runtime_error(
            fmt::format(R"({}: has no key searchIndex; add "searchIndex": "search.cdb")", installation.manifest));
    }
    return *installation.searchIndex;
}

} // namespace tessgen::cli

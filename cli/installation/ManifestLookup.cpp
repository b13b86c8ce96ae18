#include "cli/installation/ManifestLookup.hpp"

#include "cli/output/Console.hpp"
#include "standalone/manifest/ManifestFile.hpp"

#include <fmt/format.h>

#include <filesystem>
#include <stdexcept>
#include <string>
#include <system_error>
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
                fmt::format("no installation.json in {} or above; go to a folder that has one, name "
                            "one with --installation, or set KELWHICH_INSTALLATION",
                            start.string()));
        }
    }
}

} // namespace

FoundManifest findManifestAndSource(const Request& request) {
    if (request.installation) {
        return {*request.installation, ManifestSource::option};
    }
    auto named = environment("KELWHICH_INSTALLATION");
    if (!named.empty()) {
        return {std::move(named), ManifestSource::environment};
    }
    return {nearestManifest(), ManifestSource::nearest};
}

std::string findManifest(const Request& request) {
    return findManifestAndSource(request).path;
}

void refuseToReplaceManifest(const std::string& output, const std::string& manifest, std::string_view key) {
    std::error_code absent;
    const auto written = std::filesystem::canonical(output, absent);
    if (!absent
        && (written.filename() == standalone::manifestName || std::filesystem::equivalent(manifest, written, absent)
            || std::filesystem::equivalent(std::filesystem::path(manifest) / standalone::manifestName, written,
                                           absent))) {
        throw std::runtime_error(fmt::format("{}: is the manifest; name another file with {}", output, key));
    }
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
            fmt::format("{}: has no key searchIndex; add it with the file to build", installation.manifest));
    }
    return *installation.searchIndex;
}

} // namespace tessgen::cli

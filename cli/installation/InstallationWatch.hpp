// Notices that the files of an open installation were replaced, for a process that keeps it open.
//
// Threads: one.
#pragma once

#include "standalone/index/FolderStamp.hpp"
#include "standalone/manifest/Installation.hpp"

#include <optional>
#include <string>

namespace tessgen::cli {

// Construct it before the file is read, so that no change is missed.
class FileWatch {
public:
    explicit FileWatch(std::string path);

    // Whether another file, or none, is there since the last call, or since construction.
    [[nodiscard]] bool hasChanged();

private:
    using Stamp = std::optional<standalone::FolderStamp>;
    [[nodiscard]] Stamp stamp() const;

    std::string path_;
    Stamp last_; // none without a file
};

class InstallationWatch {
public:
    // Reads the manifest, or the one in a folder. Errors: those of standalone::readInstallation.
    explicit InstallationWatch(const std::string& fileOrFolder);

    [[nodiscard]] const standalone::Installation& installation() const { return installation_; }

    // Whether the support store or the search index is another since the last call, or since construction.
    [[nodiscard]] bool isDataReplaced();
    // Whether the manifest changed; true once.
    [[nodiscard]] bool isManifestChanged();

private:
    std::optional<FileWatch> manifest_; // none after its first change
    standalone::Installation installation_;
    std::optional<FileWatch> store_;
    std::optional<FileWatch> index_;
};

} // namespace tessgen::cli

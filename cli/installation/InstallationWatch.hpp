// Notices that the files of an open installation were replaced, for a process that keeps it open in the live view.
//
// Threads: one.
#pragma once

#include "standalone/manifest/Installation.hpp"
#include "standalone/watch/WatchedFile.hpp"

#include <optional>
#include <string>

namespace tessgen::cli {

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
    std::optional<standalone::FileStamp> manifest_; // none after its first change
    standalone::Installation installation_;
    std::optional<standalone::FileStamp> store_;
    std::optional<standalone::FileStamp> index_;
};

} // namespace tessgen::cli

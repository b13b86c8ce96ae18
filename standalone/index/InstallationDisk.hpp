// The disk of an installation as it is now: walked from its root, behind its index.
//
// It holds the root open. Make one for each question, or for each snapshot. Threads: any, at the same time.
#pragma once

#include "standalone/files/DirectoryHandle.hpp"
#include "standalone/files/RealFileTree.hpp"
#include "standalone/index/SearchIndex.hpp"
#include "standalone/manifest/Installation.hpp"

#include <optional>

namespace tessgen::standalone {

// Whether the installation has a search index, and it was built.
// Errors: DiskError.
[[nodiscard]] bool isIndexBuilt(const Installation& installation);

class InstallationDisk {
public:
    // Lifetime: both outlive the disk.
    InstallationDisk(const Installation& installation, const std::optional<SearchIndex>& index);

    [[nodiscard]] const FileTree& files() const { return files_; }

    // Call it after the last question: what was found below a root that is gone, or that another folder took the place
    // of, is no answer.
    // Errors: std::runtime_error when it is so.
    void requireSameRoot() const;

private:
    const Installation& installation_;
    const DirectoryHandle top_; // most of the search path lies in it
    const RealFileTree now_;
    const IndexedFileTree files_;
};

} // namespace tessgen::standalone

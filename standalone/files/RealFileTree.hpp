// The machine's disk as a file tree, read at each call.
//
// A large folder that changes while it is listed is listed again, a few times.
// Errors: DiskError; its code is EAGAIN for a folder that keeps changing.
#pragma once

#include "standalone/files/DirectoryHandle.hpp"
#include "standalone/files/FileTree.hpp"

#include <cstdint>
#include <optional>
#include <string>
#include <sys/stat.h>
#include <vector>

namespace tessgen::standalone {

// What the system knows about a folder itself.
struct FolderStatus {
    struct stat inode {};
    std::uint32_t fileSystem = 0; // its magic number
    bool hasNoAccessList = false; // the mode alone decides who may list it; false also when that is not known
};

class RealFileTree final : public FileTree {
public:
    // Walks from `top` to what lies below it; null: from the root of the disk.
    // Lifetime: `top` outlives the tree.
    explicit RealFileTree(const DirectoryHandle* top = nullptr) : top_(top) {}

    [[nodiscard]] std::optional<std::vector<Entry>> entries(const std::string& folder,
                                                            const EntryFilter& wanted) const override;
    [[nodiscard]] std::optional<Kind> kindOf(const std::string& path) const override;

    // The same as `entries`; `status` becomes that of the very folder, read before it is listed.
    [[nodiscard]] std::optional<std::vector<Entry>>
    entriesAndStatus(const std::string& folder, const EntryFilter& wanted, FolderStatus& status) const;

private:
    std::optional<std::vector<Entry>> list(const std::string& folder, const EntryFilter& wanted,
                                           FolderStatus* status) const;

    const DirectoryHandle* top_;
};

// Whether links on the way to the path lead in a circle, or are too many. A file tree takes such a path for absent.
[[nodiscard]] bool isLinkCircle(const std::string& path);

// The path of the same place on the disk without links; nothing when nothing is there.
[[nodiscard]] std::optional<std::string> realPath(const std::string& path);

} // namespace tessgen::standalone

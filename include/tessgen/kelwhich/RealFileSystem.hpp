// The real machine: files from the disk, folders and roots from the host.
//
// Threads: `exists`, `orvakroot` and `isOnKELPath` from any thread, at the same time; `spkgroot` evaluates a host
// function and needs a thread that has an engine.
#pragma once

#include "tessgen/kelwhich/FileSystem.hpp"

#include <cstddef>
#include <functional>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_set>

namespace tessgen::kelwhich {

class KELWHICH_EXPORT RealFileSystem final : public FileSystem {
public:
    // Folder texts, compared exactly. Looking up a view makes no string.
    struct FolderHash {
        using is_transparent = void;
        std::size_t operator()(std::u16string_view folder) const noexcept {
            return std::hash<std::u16string_view>()(folder);
        }
    };
    using FolderSet = std::unordered_set<std::u16string, FolderHash, std::equal_to<>>;

    RealFileSystem();

    // Follows links. False for a relative or empty path, even if the working folder has such a file. A path with a NUL
    // counts only up to it, since the system reads no further.
    // Errors: std::filesystem::filesystem_error when the system cannot find out, and for a path with a lone surrogate,
    // which no disk holds. Where "/" is not first, that is false as well.
    [[nodiscard]] bool exists(const std::u16string& path) const override;
    [[nodiscard]] std::u16string orvakroot() const override;
    // Asks the host on every call.
    [[nodiscard]] std::optional<std::u16string> spkgroot() const override;
    // Asks the host for the KEL path folders once.
    [[nodiscard]] bool isOnKELPath(const std::u16string& path) const override;

    // The KEL path folders exactly as the host lists them, each once.
    [[nodiscard]] FolderSet getKELPathDirs() const;

private:
    // Key: the folder's text. Kept: the host's list, from the first `isOnKELPath` on. Never kept: a
    // failure. Dropped: with the object. Growth: none. Threads: filled under `kelPathDirsOnce_`.
    mutable std::optional<FolderSet> kelPathDirs_;
    mutable std::once_flag kelPathDirsOnce_;
};

} // namespace tessgen::kelwhich

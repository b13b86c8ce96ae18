// The disk as the search sees it. RealFileTree looks at the machine at each call.
//
// Paths are UTF-8 texts. Links are followed: what a link leads to counts, and a link that leads nowhere is absent.
// Threads: const operations may be called concurrently on every implementation.
#pragma once

#include "standalone/files/DirectoryHandle.hpp"

#include <concepts>
#include <cstdint>
#include <fcntl.h>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <sys/stat.h>
#include <utility>
#include <vector>

namespace tessgen::standalone {

class FileTree {
public:
    enum class Kind { file, folder, link, other }; // `link`: not followed yet; `kindOf` tells

    struct Entry {
        std::string name; // as the disk has it: not necessarily UTF-8
        Kind kind;
    };

    // Which entries are wanted, by their names; a huge folder is then not copied for the few of them.
    // Lifetime: what `symbol` views, and the folder that is walked from, outlive the filter.
    class Filter {
    public:
        // `symbol`, when it is not empty, tells in other words that the filter wants no names but those of packages,
        // classes and private folders, and the symbol with a "." behind it.
        template <typename Wants>
        requires std::predicate<const Wants&, std::string_view>
        Filter(Wants wants, std::string_view symbol = {}) // NOLINT(google-explicit-constructor): any predicate is one
            : wants_(std::move(wants)), symbol_(symbol) {}

        bool operator()(std::string_view name) const { return wants_(name); }
        std::string_view symbol() const { return symbol_; }

        // Lets the system walk to the folders from there.
        void walkFrom(const DirectoryHandle& top) { top_ = &top; }
        void walkFrom(DirectoryHandle&& top) = delete; // it must outlive the filter
        PathAt walkTo(const std::string& folder) const {
            return top_ == nullptr ? PathAt{AT_FDCWD, folder.c_str()} : top_->to(folder);
        }

    private:
        std::function<bool(std::string_view name)> wants_;
        std::string_view symbol_;
        const DirectoryHandle* top_ = nullptr;
    };

    // What a folder holds of what is wanted, in no particular order, without "." and ".."; nothing when there is no
    // such folder.
    // Errors: std::system_error that names the folder and says what to do, when it is there but cannot be read to its
    // end, or holds a wanted entry whose path is longer than the system takes.
    virtual std::optional<std::vector<Entry>> entries(const std::string& folder, const Filter& wanted) const = 0;
    // What `path` leads to, never `link`; nothing when it does not exist.
    // Errors: std::system_error that names the path and says what to do, when that cannot be told.
    virtual std::optional<Kind> kindOf(const std::string& path) const = 0;
    virtual ~FileTree() = default;
};

class RealFileTree final : public FileTree {
public:
    std::optional<std::vector<Entry>> entries(const std::string& folder, const Filter& wanted) const override;
    std::optional<Kind> kindOf(const std::string& path) const override;
};

// What the system says of a folder.
struct FolderStatus {
    struct stat inode {};
    std::uint32_t fileSystem = 0; // its magic number
    bool hasNoAccessList = false; // the mode alone tells who may list it; false also when that is not known
};

// As RealFileTree::entries; `status`, unless it is null, becomes that of the very folder before it is listed.
std::optional<std::vector<FileTree::Entry>> entriesAndStatus(const std::string& folder, const FileTree::Filter& wanted,
                                                             FolderStatus* status);

// The path that leads to the same place on the disk without links; nothing when there is none.
// Errors: those of RealFileTree.
std::optional<std::string> realPath(const std::string& path);

// A path as an error names it: one that is longer than any on the disk by its size.
std::string shownPath(const std::string& path);

// What a user can do when the disk fails with that error number: the end of a line that names the path. Empty when
// nothing general can be said.
std::string_view adviceOn(int error);

} // namespace tessgen::standalone

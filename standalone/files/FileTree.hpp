// A tree of folders and files, as the search sees it.
//
// Paths are UTF-8. Links are followed: what a link leads to counts, and a link that leads nowhere is absent.
// Threads: const operations may be called concurrently on every implementation.
#pragma once

#include <functional>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace tessgen::standalone {

// The entries of a folder that are wanted. A predicate on their names, so that a huge folder need not be copied for a
// few entries.
struct EntryFilter {
    std::function<bool(std::string_view name)> accepts;
    // If set, `accepts` takes only package, class and private folders and these files, which are all of one symbol. A
    // tree may then leave out class and private folders that can be listed and hold none of these files.
    // Lifetime: they outlive the filter.
    std::span<const std::string> files = {};
};

class FileTree {
public:
    enum class Kind { file, folder, link, other }; // `link`: not followed yet; `kindOf` follows it

    struct Entry {
        std::string name; // as on the disk: not necessarily UTF-8
        Kind kind;
    };

    FileTree() = default;
    FileTree(const FileTree&) = delete;
    FileTree& operator=(const FileTree&) = delete;

    // The wanted entries of a folder, in no particular order, without "." and ".."; nothing when there is no such
    // folder.
    // Errors: std::system_error that names the folder and says what to do, when it is there but cannot be read to its
    // end, or holds a wanted entry whose path is longer than the system takes.
    [[nodiscard]] virtual std::optional<std::vector<Entry>> entries(const std::string& folder,
                                                                    const EntryFilter& wanted) const = 0;
    // The kind of what `path` leads to, never `link`; nothing when it does not exist.
    // Errors: std::system_error that names the path and says what to do, when neither can be found out.
    [[nodiscard]] virtual std::optional<Kind> kindOf(const std::string& path) const = 0;
    virtual ~FileTree();
};

// Whether an entry of `folder`, which may be null, is of that kind when links are followed.
// Errors: those of the file tree.
[[nodiscard]] bool leadsTo(FileTree::Kind kind, const FileTree& files, const std::string& folder,
                           const FileTree::Entry* entry);

} // namespace tessgen::standalone

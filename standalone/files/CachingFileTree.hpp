// A file tree as it was when it was first asked: every answer of another tree, kept.
//
// Threads: any, at the same time; the other tree is asked while a lock is held.
// Lifetime: the other tree outlives it.
#pragma once

#include "standalone/files/FileTree.hpp"

#include <cstddef>
#include <exception>
#include <memory_resource>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace tessgen::standalone {

class CachingFileTree final : public FileTree {
public:
    // Of a folder, only what is wanted is kept; no later question may want more.
    CachingFileTree(const FileTree& tree, Filter wanted);

    // A failure is remembered as well: asked again, the same error is thrown.
    std::optional<std::vector<Entry>> entries(const std::string& folder, const Filter& wanted) const override;
    std::optional<Kind> kindOf(const std::string& path) const override;

    // All that is kept of a folder, which is walked to from `top`.
    std::optional<std::vector<Entry>> entries(const std::string& folder, const DirectoryHandle& top) const;

private:
    template <typename Answer>
    struct Kept {
        std::optional<Answer> answer;
        std::exception_ptr failure;
    };
    template <typename Answer>
    using Memory = std::pmr::unordered_map<std::string_view, Kept<Answer>>;
    // Of each entry a letter for its kind, and its name with a NUL behind it.
    using Listing = std::string_view;

    template <typename Answer, typename Ask>
    const std::optional<Answer>& remembered(Memory<Answer>& memory, std::string_view path, Ask ask) const;
    // `asked` becomes what the other tree says, if it is asked now.
    const std::optional<Listing>& listing(const std::string& folder, const Filter& wanted,
                                          std::optional<std::vector<Entry>>& asked) const;
    Listing keep(const std::vector<Entry>& entries) const;
    std::string_view keep(std::string_view text) const;

    const FileTree* tree_;
    Filter wanted_;
    static constexpr std::size_t usualCount = 2048; // of folders
    // Key: the path, exactly. Kept: every answer, and every std::system_error. Dropped: with the tree. Growth: one
    // entry a path. Threads: guarded by `lock_`, the other tree's answer included.
    mutable std::pmr::monotonic_buffer_resource memory_; // of the paths and the listings as well
    mutable Memory<Listing> listings_{usualCount, &memory_};
    mutable Memory<Kind> kinds_{&memory_};
    mutable std::mutex lock_;
};

} // namespace tessgen::standalone

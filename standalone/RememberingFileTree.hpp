// A file tree as it was when it was first asked: every answer of another tree, kept.
//
// Threads: any, at the same time; the other tree is asked while a lock is held.
// Lifetime: the other tree outlives it.
#pragma once

#include "standalone/FileTree.hpp"

#include <exception>
#include <mutex>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

namespace tessgen::standalone {

class RememberingFileTree final : public FileTree {
public:
    // Of a folder, only what `kept` wants is kept; no later question may want more.
    RememberingFileTree(const FileTree& tree, Filter kept);

    // A failure is remembered as well: asked again, the same error is thrown.
    std::optional<std::vector<Entry>> entries(const std::string& folder, const Filter& wanted) const override;
    std::optional<Kind> kindOf(const std::string& path) const override;

    // All that is kept of a folder; null when there is none. It lives as long as the tree.
    const std::vector<Entry>* listing(const std::string& folder) const;

private:
    template <typename Answer>
    struct Kept {
        std::optional<Answer> answer;
        std::exception_ptr failure;
    };
    template <typename Answer>
    using Memory = std::unordered_map<std::string, Kept<Answer>>;

    template <typename Answer, typename Ask>
    const std::optional<Answer>& remembered(Memory<Answer>& memory, const std::string& path, Ask ask) const;

    const FileTree* tree_;
    Filter kept_;
    // Key: the path, exactly. Kept: every answer, and every std::system_error. Dropped: with the tree. Growth: one
    // entry a path. Threads: guarded by `lock_`, the other tree's answer included.
    mutable Memory<std::vector<Entry>> listings_;
    mutable Memory<Kind> kinds_;
    mutable std::mutex lock_;
};

} // namespace tessgen::standalone

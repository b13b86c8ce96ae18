// Caches the answers of another file tree, so that the disk stays as it was when each path was first asked for.
// Threads: any, at the same time; the other tree is asked while a lock is held.
// Lifetime: the other tree outlives it.
#pragma once

#include "standalone/files/FileTree.hpp"
#include "standalone/text/Hash.hpp"

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
    // The cache keeps the `wanted` entries of a folder; no later question may want others.
    // About `limit` bytes are cached, not counting what `entriesBy` lists; further paths are asked for each time.
    CachingFileTree(const FileTree& tree, EntryFilter wanted, std::size_t limit = std::size_t{1} << 26U);

    // Errors: those of the other tree; the same path then fails with the same error each time.
    [[nodiscard]] std::optional<std::vector<Entry>> entries(const std::string& folder,
                                                            const EntryFilter& wanted) const override;
    [[nodiscard]] std::optional<Kind> kindOf(const std::string& path) const override;

    // Every cached entry of a folder; `tree`, another tree of the same disk, lists it when it is not cached yet.
    [[nodiscard]] std::optional<std::vector<Entry>> entriesBy(const FileTree& tree, const std::string& folder) const;

    // The entries that the cache keeps.
    [[nodiscard]] const EntryFilter& wanted() const { return wanted_; }

private:
    template <typename Answer>
    struct Cached {
        std::optional<Answer> answer;
        std::exception_ptr failure;
    };
    template <typename Answer>
    using Cache = std::pmr::unordered_map<std::string_view, Cached<Answer>, TextHash>;
    using Listing = std::string_view; // packed

    enum class Growth { limited, unlimited };

    // `ask(isKept)` answers; it must not keep what is not kept.
    template <typename Answer, typename Ask>
    std::optional<Answer> cached(Cache<Answer>& cache, std::string_view path, Growth growth, Ask ask) const;
    // `fresh` becomes the answer of `tree` when it is asked.
    std::optional<Listing> listing(const FileTree& tree, const std::string& folder, Growth growth,
                                   std::optional<std::vector<Entry>>& fresh) const;
    Listing store(const std::vector<Entry>& entries) const;
    std::string_view store(std::string_view text) const;

    const FileTree* tree_;
    const EntryFilter wanted_;
    static constexpr std::size_t usualCount = 2048; // of folders
    // Key: the path, exactly. Kept: every answer, and every std::system_error, up to the limit. Dropped: with the tree.
    // Growth: one entry a path. Threads: guarded by `lock_`, which is held while the other tree answers.
    mutable std::pmr::monotonic_buffer_resource memory_; // of the paths and the listings as well
    mutable Cache<Listing> listings_{usualCount, &memory_};
    mutable Cache<Kind> kinds_{&memory_};
    const std::size_t limit_;
    mutable std::size_t bytes_ = 0; // of what counts for the limit
    mutable std::mutex lock_;
};

} // namespace tessgen::standalone

#include "standalone/files/CachingFileTree.hpp"

#include "standalone/files/PackedListing.hpp"

#include <algorithm>
#include <cstddef>
#include <system_error>
#include <utility>

namespace tessgen::standalone {

namespace {

using Entry = FileTree::Entry;

constexpr std::size_t usualSize = std::size_t{1} << 20U; // untouched memory is free

// Bytes that an entry takes besides its path, with its share of the table; a failure holds its message.
constexpr std::size_t entrySize = 100;
constexpr std::size_t failureSize = 700;

} // namespace

CachingFileTree::CachingFileTree(const FileTree& tree, EntryFilter wanted, std::size_t limit)
    : tree_(&tree), wanted_(std::move(wanted)), memory_(usualSize), limit_(limit) {}

template <typename Answer, typename Ask>
std::optional<Answer> CachingFileTree::cached(Cache<Answer>& cache, std::string_view path, Growth growth,
                                              Ask ask) const {
    const std::lock_guard guard(lock_);
    auto known = cache.find(path);
    if (known == cache.end()) {
        const bool isLimited = growth == Growth::limited;
        if (isLimited && bytes_ >= limit_) {
            return ask(false);
        }
        Cached<Answer> made;
        try {
            made.answer = ask(true);
        } catch (const std::system_error&) {
            made.failure = std::current_exception();
        }
        const std::size_t size = path.size() + (made.failure ? failureSize : entrySize);
        known = cache.emplace(store(path), std::move(made)).first;
        bytes_ += isLimited ? size : 0;
    }
    if (known->second.failure) {
        std::rethrow_exception(known->second.failure);
    }
    return known->second.answer;
}

std::optional<std::vector<FileTree::Entry>> CachingFileTree::entriesBy(const FileTree& tree,
                                                                       const std::string& folder) const {
    std::optional<std::vector<Entry>> fresh;
    const auto known = listing(tree, folder, Growth::unlimited, fresh);
    return fresh || !known ? std::move(fresh) : unpacked(*known, [](std::string_view) { return true; });
}

std::optional<std::vector<FileTree::Entry>> CachingFileTree::entries(const std::string& folder,
                                                                     const EntryFilter& wanted) const {
    std::optional<std::vector<Entry>> fresh;
    const auto known = listing(*tree_, folder, Growth::limited, fresh);
    if (fresh) {
        std::erase_if(*fresh, [&](const Entry& entry) { return !wanted.accepts(entry.name); });
        return fresh;
    }
    return known ? std::optional(unpacked(*known, wanted.accepts)) : std::nullopt;
}

std::optional<CachingFileTree::Listing> CachingFileTree::listing(const FileTree& tree, const std::string& folder,
                                                                 Growth growth,
                                                                 std::optional<std::vector<Entry>>& fresh) const {
    return cached(listings_, folder, growth, [&](bool isKept) {
        fresh = tree.entries(folder, wanted_);
        if (!fresh) {
            return std::optional<Listing>();
        }
        const auto listing = isKept ? store(*fresh) : Listing();
        bytes_ += growth == Growth::limited ? listing.size() : 0;
        return std::optional(listing);
    });
}

std::optional<FileTree::Kind> CachingFileTree::kindOf(const std::string& path) const {
    return cached(kinds_, path, Growth::limited, [&](bool /*isKept*/) { return tree_->kindOf(path); });
}

CachingFileTree::Listing CachingFileTree::store(const std::vector<Entry>& entries) const {
    const std::size_t size = packedSize(entries);
    auto* const begin = static_cast<char*>(memory_.allocate(size, 1));
    pack(entries, begin);
    return {begin, size};
}

std::string_view CachingFileTree::store(std::string_view text) const {
    auto* const begin = static_cast<char*>(memory_.allocate(text.size(), 1));
    std::copy(text.begin(), text.end(), begin);
    return {begin, text.size()};
}

} // namespace tessgen::standalone

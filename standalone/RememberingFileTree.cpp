#include "standalone/RememberingFileTree.hpp"

#include <algorithm>
#include <iterator>
#include <system_error>
#include <utility>

namespace tessgen::standalone {

RememberingFileTree::RememberingFileTree(const FileTree& tree, Filter kept) : tree_(&tree), kept_(std::move(kept)) {}

template <typename Answer, typename Ask>
const std::optional<Answer>& RememberingFileTree::remembered(Memory<Answer>& memory, const std::string& path,
                                                             Ask ask) const {
    const std::lock_guard guard(lock_);
    auto known = memory.find(path);
    if (known == memory.end()) {
        Kept<Answer> kept;
        try {
            kept.answer = ask();
        } catch (const std::system_error&) {
            kept.failure = std::current_exception();
        }
        known = memory.emplace(path, std::move(kept)).first;
    }
    if (known->second.failure) {
        std::rethrow_exception(known->second.failure);
    }
    return known->second.answer;
}

const std::vector<FileTree::Entry>* RememberingFileTree::listing(const std::string& folder) const {
    const auto& answer = remembered(listings_, folder, [&] { return tree_->entries(folder, kept_); });
    return answer ? &*answer : nullptr;
}

std::optional<std::vector<FileTree::Entry>> RememberingFileTree::entries(const std::string& folder,
                                                                         const Filter& wanted) const {
    const std::vector<Entry>* const all = listing(folder);
    if (all == nullptr) {
        return std::nullopt;
    }
    std::vector<Entry> found;
    std::copy_if(all->begin(), all->end(), std::back_inserter(found),
                 [&](const Entry& entry) { return wanted(entry.name); });
    return found;
}

std::optional<FileTree::Kind> RememberingFileTree::kindOf(const std::string& path) const {
    return remembered(kinds_, path, [&] { return tree_->kindOf(path); });
}

} // namespace tessgen::standalone

#include "standalone/watch/WatchedFileTree.hpp"

#include "standalone/files/MountPoints.hpp"
#include "standalone/files/PackedListing.hpp"
#include "standalone/text/PathText.hpp"

#include <algorithm>
#include <climits>
#include <stdexcept>
#include <utility>

namespace tessgen::standalone {

NotKept::NotKept() : std::system_error(std::make_error_code(std::errc::operation_not_supported)) {}

WatchedFileTree::WatchedFileTree(FolderWatch& watch, EntryFilter wanted) : watch_(&watch), wanted_(std::move(wanted)) {}

void WatchedFileTree::askFor(User user, const FileTree& disk) {
    user_ = user;
    disk_ = &disk;
}

std::optional<std::vector<FileTree::Entry>> WatchedFileTree::entries(const std::string& folder,
                                                                     const EntryFilter& /*wanted*/) const {
    Kept& kept = keptFor(folder);
    if (kept.isSure) {
        return kept.listing ? std::optional(unpacked(*kept.listing, [](std::string_view) { return true; }))
                            : std::nullopt;
    }
    kept.reason = watch_->watch(folder); // before it is listed, so that no change is missed
    if (kept.reason) {
        throw NotKept();
    }
    ++listed_;
    std::optional<std::vector<Entry>> found;
    try {
        found = disk_->entries(folder, wanted_);
    } catch (const std::runtime_error&) { // of the disk, or of its index
        throw NotKept();
    }
    if (found) {
        doubtMountPoints(*found, watch_->mountNames());
        std::string listing(packedSize(*found), '\0');
        pack(*found, listing.data());
        kept.listing = std::move(listing);
    }
    kept.isSure = true;
    return found;
}

std::optional<FileTree::Kind> WatchedFileTree::kindOf(const std::string& path) const {
    keptFor(path).reason = NotWatched::link;
    throw NotKept();
}

WatchedFileTree::Kept& WatchedFileTree::keptFor(const std::string& path) const {
    if (path.size() >= PATH_MAX) { // may lie below any number of folders
        throw NotKept();
    }
    Kept& kept = kept_.at(path).value;
    if (std::find(kept.users.begin(), kept.users.end(), user_) == kept.users.end()) {
        kept.users.push_back(user_);
    }
    return kept;
}

std::vector<WatchedFileTree::User> WatchedFileTree::drop(const FolderChange& change) {
    std::vector<User> users;
    const auto addUsers = [&users](const auto& entry) {
        users.insert(users.end(), entry.value.users.begin(), entry.value.users.end());
    };
    switch (change.what) {
    case FolderChange::What::content:
        break;
    case FolderChange::What::entry:
        kept_.erase(joinPath(change.folder, change.name), addUsers);
        if (auto* const folder = kept_.find(change.folder); folder != nullptr && wanted_.accepts(change.name)) {
            addUsers(*folder);
            folder->value = {};
        }
        break;
    case FolderChange::What::folder:
        kept_.erase(change.folder, addUsers);
        break;
    }
    return users;
}

std::array<std::size_t, notWatchedCount> WatchedFileTree::notWatched() const {
    std::array<std::size_t, notWatchedCount> counts{};
    kept_.forEach([&counts](const auto& entry) {
        if (const auto reason = entry.value.reason) {
            ++counts.at(static_cast<std::size_t>(*reason));
        }
    });
    return counts;
}

} // namespace tessgen::standalone

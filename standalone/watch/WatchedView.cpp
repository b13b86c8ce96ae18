#include "standalone/watch/WatchedView.hpp"

#include "standalone/files/OverlayFileTree.hpp"
#include "standalone/index/InstallationDisk.hpp"
#include "standalone/text/PathText.hpp"
#include "standalone/text/Text.hpp"

#include <algorithm>
#include <iterator>
#include <utility>

namespace tessgen::standalone {

namespace {

std::optional<WatchedFile> watchedFile(const std::optional<std::string>& path) {
    return path && !path->empty() ? std::optional<WatchedFile>(*path) : std::nullopt;
}

// As if each of these files, and the folders that would be made for it, had appeared or vanished.
std::vector<FolderChange> entryChanges(const std::vector<std::string>& files) {
    std::vector<FolderChange> changes;
    for (std::string path : files) {
        std::string name;
        do {
            const auto slash = path.rfind('/');
            name = path.substr(slash + 1);
            path.resize(std::max<std::size_t>(slash, 1));
            changes.push_back({FolderChange::What::entry, path, name});
        } while (isPackageClassOrPrivate(path.substr(path.rfind('/') + 1)));
    }
    return changes;
}

} // namespace

WatchedView::WatchedView(const Installation& installation)
    : installation_(installation), manifest_(watchedFile(installation.manifest)),
      storeFile_(watchedFile(installation.supportStore)), indexFile_(watchedFile(installation.searchIndex)),
      search_(installation, watch_), builtins_(installation.builtins) {
    requireIndex();
    (void)store();
    listedFirst_ = search_.files().listed();
}

void WatchedView::startOver() {
    isWhole_ = false;
    ++changes_;
    isRootSure_ = false;
    watch_.clear();
    for (auto* const file : {&manifest_, &storeFile_, &indexFile_}) {
        if (*file) {
            (*file)->forget();
        }
    }
    (void)watch_.watch(installation_.root); // before it is held open, so that another in its place is noticed
    const InstallationDisk disk(installation_, index_);
    search_.startOver(OverlayFileTree(disk.files(), overlay_));
    isWhole_ = true;
}

void WatchedView::update() {
    if (!isWhole_) {
        startOver();
        return;
    }
    isWhole_ = false; // if anything fails here, and in `apply`, changes are lost
    const FolderWatch::Changes changes = watch_.take();
    counts_.lostQueues += changes.isQueueLost ? 1 : 0;
    counts_.mounts += changes.areMountsOther ? 1 : 0;
    if (changes.isQueueLost || changes.areMountsOther) {
        startOver();
        return;
    }
    if (!changes.list.empty()) {
        ++changes_;
        note(changes.list);
        apply(changes.list);
    }
    isWhole_ = true;
}

void WatchedView::apply(const std::vector<FolderChange>& changes) {
    isWhole_ = false;
    const RealFileTree disk;
    search_.apply(changes, OverlayFileTree(disk, overlay_));
    isWhole_ = true;
}

void WatchedView::setOverlay(std::set<std::string> files) {
    const std::lock_guard guard(lock_);
    std::vector<std::string> other; // in one of the two only
    std::set_symmetric_difference(files.begin(), files.end(), overlay_.begin(), overlay_.end(),
                                  std::back_inserter(other));
    if (other.empty()) {
        return;
    }
    update();
    overlay_ = std::move(files);
    ++changes_;
    apply(entryChanges(other));
}

void WatchedView::note(const std::vector<FolderChange>& changes) {
    for (const FolderChange& change : changes) {
        isRootSure_ = isRootSure_ && !concerns(change, installation_.root);
        for (auto* const file : {&manifest_, &storeFile_, &indexFile_}) {
            if (*file) {
                (*file)->note(change);
            }
        }
    }
}

void WatchedView::requireIndex() {
    if (indexFile_ && (indexFile_->hasChanged(watch_) || !isIndexOpen_)) {
        isIndexOpen_ = false;
        index_.reset();
        if (isIndexBuilt(installation_)) {
            index_.emplace(*installation_.searchIndex);
        }
        isIndexOpen_ = true;
    }
}

void WatchedView::requireRoot() {
    if (!isRootSure_) {
        const bool isWatched = !watch_.watch(installation_.root);
        requireFolder(installation_, "root", installation_.root);
        isRootSure_ = isWatched;
    }
}

std::vector<FoundPlace> WatchedView::find(std::u16string_view name) {
    const std::lock_guard guard(lock_);
    ++counts_.questions;
    update();
    requireRoot();
    requireIndex();
    const bool isPath = name.find(u'/') != std::u16string_view::npos;
    const auto symbol = isPath ? std::nullopt : toUTF8(name);
    std::vector<FoundPlace> places;
    if (symbol && search_.isKept(*symbol)) {
        places = search_.find(*symbol, RealFileTree());
    } else {
        const InstallationDisk disk(installation_, index_);
        const OverlayFileTree files(disk.files(), overlay_);
        places = symbol ? search_.find(*symbol, files) : NameSearch(installation_, files).find(name);
        disk.requireSameRoot();
    }
    if (symbol) {
        builtins_.add(name, places);
    }
    return places;
}

std::shared_ptr<const SupportStore> WatchedView::store() {
    const std::lock_guard guard(lock_);
    update();
    if (storeFile_ && (storeFile_->hasChanged(watch_) || !store_)) {
        store_.reset();
        store_ = std::make_shared<const SupportStore>(*installation_.supportStore, installation_.root);
    }
    return store_;
}

std::vector<std::string> WatchedView::symbols() {
    const std::lock_guard guard(lock_);
    update();
    return search_.symbols();
}

bool WatchedView::takeManifestChange() {
    const std::lock_guard guard(lock_);
    update();
    const bool isChanged = manifest_ && manifest_->hasChanged(watch_);
    if (isChanged) {
        manifest_.reset();
    }
    return isChanged;
}

std::uint64_t WatchedView::changes() const {
    const std::lock_guard guard(lock_);
    return changes_;
}

bool WatchedView::watchesAll() const {
    const std::lock_guard guard(lock_);
    return search_.isAllKept() && (!storeFile_ || storeFile_->isWatched());
}

WatchCounts WatchedView::counts() const {
    const std::lock_guard guard(lock_);
    WatchCounts counts = counts_;
    counts.listed = listedFirst_;
    counts.listedAgain = search_.files().listed() - listedFirst_;
    counts.notWatched = search_.files().notWatched();
    return counts;
}

} // namespace tessgen::standalone

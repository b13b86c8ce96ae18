#include "standalone/watch/WatchedView.hpp"

#include "standalone/index/InstallationDisk.hpp"
#include "standalone/text/Text.hpp"

namespace tessgen::standalone {

namespace {

std::optional<WatchedFile> watchedFile(const std::optional<std::string>& path) {
    return path && !path->empty() ? std::optional<WatchedFile>(*path) : std::nullopt;
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
    isRootSure_ = false;
    watch_.clear();
    for (auto* const file : {&manifest_, &storeFile_, &indexFile_}) {
        if (*file) {
            (*file)->forget();
        }
    }
    (void)watch_.watch(installation_.root); // before it is held open, so that another in its place is noticed
    const InstallationDisk disk(installation_, index_);
    search_.startOver(disk.files());
    isWhole_ = true;
}

void WatchedView::update() {
    if (!isWhole_) {
        startOver();
        return;
    }
    isWhole_ = false; // if anything fails here, changes are lost
    const FolderWatch::Changes changes = watch_.take();
    counts_.lostQueues += changes.isQueueLost ? 1 : 0;
    counts_.mounts += changes.areMountsOther ? 1 : 0;
    if (changes.isQueueLost || changes.areMountsOther) {
        startOver();
        return;
    }
    if (!changes.list.empty()) {
        note(changes.list);
        search_.apply(changes.list, RealFileTree());
    }
    isWhole_ = true;
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
        if (!symbol) {
            places = NameSearch(installation_, disk.files()).find(name);
            disk.requireSameRoot();
            return places;
        }
        places = search_.find(*symbol, disk.files());
        disk.requireSameRoot();
    }
    builtins_.add(name, places);
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

WatchCounts WatchedView::counts() const {
    const std::lock_guard guard(lock_);
    WatchCounts counts = counts_;
    counts.listed = listedFirst_;
    counts.listedAgain = search_.files().listed() - listedFirst_;
    counts.notWatched = search_.files().notWatched();
    return counts;
}

} // namespace tessgen::standalone

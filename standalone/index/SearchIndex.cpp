#include "standalone/index/SearchIndex.hpp"

#include "standalone/index/SearchIndexFormat.hpp"
#include "standalone/text/PathText.hpp"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace tessgen::standalone {

namespace {

// Whether the folder is still the recorded one and the user, who need not be the one who built the index, may list it.
bool isCurrent(const PathAt& folder, const FolderSummary& recorded) {
    struct stat status {};
    return fstatat(folder.folder, folder.path, &status, 0) == 0 && stampOf(status) == recorded.stamp
           && (recorded.isWorldReadable || faccessat(folder.folder, folder.path, R_OK, AT_EACCESS) == 0);
}

// Adds the wanted ones of a folder's special folders. Those that hold no file of the symbol, where there is one, are
// left out, as long as they are the recorded ones and can be listed. False when the entry is damaged.
bool addSpecialFolders(const std::string& folder, const IndexedFolder& recorded, const EntryFilter& wanted,
                       const std::optional<Fingerprint>& symbol, const DirectoryHandle* top,
                       std::vector<FileTree::Entry>& found) {
    auto path = joinPath(folder, "");
    const auto above = path.size();
    auto below = recorded.below;
    for (auto rest = recorded.specialFolders; !rest.empty();) {
        const auto entry = takeEntry(rest);
        const auto summary = entry && isClassOrPrivate(entry->name) ? takeSummary(below) : FolderSummary();
        if (!entry || !summary) {
            return false;
        }
        if (!wanted.accepts(entry->name)) {
            continue;
        }
        if (summary->isRecorded && symbol && !summary->mayContain(*symbol)) {
            path.resize(above);
            path += entry->name;
            if (isCurrent(walkFrom(top, path), *summary)) {
                continue;
            }
        }
        found.push_back({std::string(entry->name), entry->kind});
    }
    return below.empty();
}

} // namespace

SearchIndex::SearchIndex(const std::string& file) : file_(file, searchIndexKind) {}

std::optional<std::vector<FileTree::Entry>> SearchIndex::entries(const std::string& folder, const EntryFilter& wanted,
                                                                 const DirectoryHandle* top) const {
    const auto entry = DatabaseSearch(file_, folder).nextUnchecked();
    if (!entry) {
        return std::nullopt;
    }
    const auto recorded = decodeFolder(entry->value);
    if (recorded && !isCurrent(walkFrom(top, folder), recorded->summary)) {
        return std::nullopt;
    }
    const auto symbol = wanted.files.empty() ? std::nullopt : std::optional<Fingerprint>(wanted.files.front());
    std::optional<std::vector<FileTree::Entry>> found(std::in_place);
    bool isGood = recorded && addSpecialFolders(folder, *recorded, wanted, symbol, top, *found);
    if (isGood && (!symbol || recorded->summary.mayContain(*symbol))) {
        file_.check(*entry);
        isGood = decodeEntries(recorded->others, wanted, *found);
    }
    if (!isGood) {
        file_.failDamaged("a folder is not in the index's format");
    }
    return found;
}

std::optional<std::vector<FileTree::Entry>> IndexedFileTree::entries(const std::string& folder,
                                                                     const EntryFilter& wanted) const {
    auto known = index_ == nullptr ? std::nullopt : index_->entries(folder, wanted, top_);
    return known ? std::move(known) : disk_->entries(folder, wanted);
}

} // namespace tessgen::standalone

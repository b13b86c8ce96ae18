#include "standalone/index/SearchIndex.hpp"

#include "standalone/index/SearchIndexFormat.hpp"

#include <cstddef>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace tessgen::standalone {

namespace {

// Whether the folder is still the recorded one and the user, who need not be the one who built the index, may list it.
bool isCurrent(const PathAt& folder, const IndexedFolder& recorded) {
    struct stat status {};
    return fstatat(folder.folder, folder.path, &status, 0) == 0 && stampOf(status) == recorded.stamp
           && (recorded.isWorldReadable || faccessat(folder.folder, folder.path, R_OK, AT_EACCESS) == 0);
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
    if (recorded && !isCurrent(walkFrom(top, folder), *recorded)) {
        return std::nullopt;
    }
    std::optional<std::vector<FileTree::Entry>> found(std::in_place);
    if (recorded && !recorded->specialFolders.empty()) {
        constexpr std::size_t usualCount = 8;
        found->reserve(usualCount);
    }
    bool isGood = recorded && decodeEntries(recorded->specialFolders, wanted, *found);
    if (isGood && (wanted.symbol.empty() || recorded->mayContain(wanted.symbol))) {
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

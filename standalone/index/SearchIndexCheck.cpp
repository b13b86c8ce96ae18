#include "standalone/index/SearchIndexCheck.hpp"

#include "standalone/index/SearchIndexBuilder.hpp"
#include "standalone/index/SearchIndexFormat.hpp"
#include "standalone/search/SnapshotSearch.hpp"
#include "standalone/text/PathText.hpp"

#include <algorithm>
#include <optional>
#include <string_view>
#include <sys/stat.h>
#include <utility>

namespace tessgen::standalone {

namespace {

class IndexChecker final : public DatabaseChecker {
public:
    using DatabaseChecker::DatabaseChecker;

private:
    bool checkEntry(const DatabaseEntry& entry) override {
        const auto found = DatabaseSearch(file(), entry.key).next();
        return expect(entry.key.starts_with('/') && isWritten(entry), "no build writes such a folder")
               && expect(found && found->key.data() == entry.key.data(), "the folder is not found by its path");
    }

    [[nodiscard]] bool isWritten(const DatabaseEntry& entry) const {
        const EntryFilter all{[](std::string_view /*name*/) { return true; }};
        const auto folder = decodeFolder(entry.value);
        std::vector<FileTree::Entry> entries;
        return folder && decodeEntries(folder->specialFolders, all, entries)
               && areSummariesOf(entry.key, entries, folder->below) && decodeEntries(folder->others, all, entries)
               && encodeValue(encodeFolder(folder->summary.stamp, folder->summary.isWorldReadable, entries),
                              folder->below)
                      == entry.value;
    }

    [[nodiscard]] bool areSummariesOf(std::string_view folder, const std::vector<FileTree::Entry>& specialFolders,
                                      std::string_view below) const {
        return std::all_of(specialFolders.begin(), specialFolders.end(),
                           [&](const auto& entry) {
                               return !isClassOrPrivate(entry.name)
                                      || isSummaryOf(joinPath(folder, entry.name), takeSummary(below));
                           })
               && below.empty();
    }

    // Whether the summary is the one in the folder's own entry. A damaged entry is reported by itself.
    [[nodiscard]] bool isSummaryOf(const std::string& folder, const std::optional<FolderSummary>& summary) const {
        const auto entry = DatabaseSearch(file(), folder).nextUnchecked();
        const auto own = entry ? decodeFolder(entry->value) : IndexedFolder();
        return summary && (!own || own->summary == *summary);
    }
};

// The disk behind its index; notes which of the two serves each folder.
class CountingFileTree final : public FileTree {
public:
    CountingFileTree(const SearchIndex& index, const std::string& file) : index_(index), own_(file) {}

    [[nodiscard]] std::optional<std::vector<Entry>> entries(const std::string& folder,
                                                            const EntryFilter& wanted) const override {
        if (auto known = index_.entries(folder, wanted)) {
            ++use_.folders;
            return known;
        }
        FolderStatus status;
        auto found = disk_.entriesAndStatus(folder, wanted, status);
        if (found && !own_.is(status.inode)) {
            ++use_.folders;
            use_.changed.push_back(folder);
        }
        return found;
    }
    [[nodiscard]] std::optional<Kind> kindOf(const std::string& path) const override { return disk_.kindOf(path); }

    IndexUse takeUse() { return std::move(use_); }

private:
    const SearchIndex& index_;
    const OwnFolder own_;
    const RealFileTree disk_;
    mutable IndexUse use_;
};

} // namespace

DatabaseCheck checkSearchIndex(const std::string& file) {
    const DatabaseFile opened(file, searchIndexKind);
    return IndexChecker(opened).run();
}

IndexUse useOf(const SearchIndex& index, const Installation& installation) {
    CountingFileTree files(index, installation.searchIndex.value());
    const SnapshotSearch search(installation, files);
    return files.takeUse();
}

} // namespace tessgen::standalone

// The files and records of an installation as they are at each question, kept as long as the system says that nothing
// changed.
//
// What is answered holds every change that was made on this machine before the question. Kept are the listings of
// folders that a watch can promise, and the open store. All else is looked at each time, as in the live view: names
// with "/", links and what they lead to, and folders that are not watched (NotWatched says why). When the system loses
// changes, or something is mounted, everything is listed anew.
// Threads: any, at the same time; a lock is held while a question is answered.
#pragma once

#include "standalone/index/SearchIndex.hpp"
#include "standalone/manifest/Installation.hpp"
#include "standalone/search/BuiltinTable.hpp"
#include "standalone/store/SupportStore.hpp"
#include "standalone/watch/FolderWatch.hpp"
#include "standalone/watch/WatchedFile.hpp"
#include "standalone/watch/WatchedSearch.hpp"

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <mutex>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace tessgen::standalone {

struct WatchCounts {
    std::uint64_t questions = 0;
    std::uint64_t listed = 0;                              // folders, when the view was made
    std::uint64_t listedAgain = 0;                         // and since then
    std::uint64_t lostQueues = 0;                          // times that the system lost changes
    std::uint64_t mounts = 0;                              // times that something was mounted or unmounted
    std::array<std::size_t, notWatchedCount> notWatched{}; // folders and links that are looked at each time, by reason
};

class WatchedView {
public:
    // Lists every folder of the search path. Opens the store and the search index.
    // Errors: CannotWatch; those of NameIndex, SupportStore and SearchIndex.
    // Lifetime: the installation outlives the view.
    explicit WatchedView(const Installation& installation);

    // The places of a name, as NameSearch::find. An index that was replaced is opened anew.
    // Errors: those of the disk; std::runtime_error when the root is gone; those of SearchIndex; the next call tries
    // again.
    [[nodiscard]] std::vector<FoundPlace> find(std::u16string_view name);

    // The store; null when the installation has none. A store that was replaced is opened anew.
    // Errors: those of SupportStore; the next call tries again.
    [[nodiscard]] std::shared_ptr<const SupportStore> store();

    // Every symbol that has a file, once, but for those whose files are looked at each time.
    [[nodiscard]] std::vector<std::string> symbols();

    // Whether the manifest, which is not read again, changed since construction; true once.
    [[nodiscard]] bool takeManifestChange();

    // From now on these files count as there, too, with the package, class and private folders that lead to them:
    // absolute paths without ".", "..", and "/" at the end. Only for names; whether a path exists, the disk says.
    // Errors: those of NameIndex and FolderWatch.
    void setOverlay(std::set<std::string> files);

    // How often something that is watched changed, or might have.
    [[nodiscard]] std::uint64_t changes() const;

    // Whether nothing is looked at each time, for a name without "/".
    [[nodiscard]] bool watchesAll() const;

    [[nodiscard]] WatchCounts counts() const;

    // Readable when something changed since the last question. It may be readable when nothing did that matters.
    [[nodiscard]] int descriptor() const { return watch_.descriptor(); }

private:
    void update();
    void startOver();
    void note(const std::vector<FolderChange>& changes);
    void apply(const std::vector<FolderChange>& changes);
    void requireRoot();
    void requireIndex();

    const Installation& installation_;
    FolderWatch watch_;
    std::optional<WatchedFile> manifest_; // none after its first change
    std::optional<WatchedFile> storeFile_;
    std::optional<WatchedFile> indexFile_;
    std::shared_ptr<const SupportStore> store_; // null until it is opened (again)
    std::optional<SearchIndex> index_;
    bool isIndexOpen_ = false; // or known not to be built
    WatchedSearch search_;
    const BuiltinTable builtins_;
    bool isWhole_ = false;    // false when everything is to be listed anew
    bool isRootSure_ = false; // a change of the root would be told
    WatchCounts counts_;
    std::uint64_t listedFirst_ = 0;
    std::uint64_t changes_ = 0;
    std::set<std::string> overlay_;
    mutable std::mutex lock_;
};

} // namespace tessgen::standalone

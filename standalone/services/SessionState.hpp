// The state that an open session answers from.
//
// Threads: any, at the same time.
#pragma once

#include "standalone/Session.hpp"
#include "standalone/files/RealFileTree.hpp"
#include "standalone/index/SearchIndex.hpp"
#include "standalone/manifest/Installation.hpp"
#include "standalone/search/SnapshotSearch.hpp"
#include "standalone/store/SupportStore.hpp"
#include "standalone/watch/WatchedView.hpp"

#include <memory>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace tessgen::standalone {

struct SessionState {
    SessionState(Installation opened, View view);
    SessionState(const SessionState&) = delete;
    SessionState& operator=(const SessionState&) = delete;
    ~SessionState() = default;

    // NameSearch::find in the session's view of the disk.
    [[nodiscard]] std::vector<FoundPlace> find(std::u16string_view name) const;

    // The support store in the session's view; null when the installation has none.
    // Errors: in the watched view those of SupportStore, for one that was replaced.
    [[nodiscard]] std::shared_ptr<const SupportStore> supportStore() const {
        return watched ? watched->store() : store;
    }

    // Every symbol that has a file, once. What is not kept in the session's view is looked at now.
    // Errors: those of SnapshotSearch.
    [[nodiscard]] std::vector<std::string> symbols() const;

    // From now on these files count as there, too, as for WatchedView::setOverlay; in a snapshot they do not. Not while
    // another thread asks.
    // Errors: those of WatchedView::setOverlay.
    void setOverlay(std::set<std::string> added) const;

    const Installation installation;
    const RealFileTree disk;
    std::string notWatched;                 // why the watched view is live, if it is
    std::unique_ptr<WatchedView> watched;   // only in the watched view
    const std::optional<SearchIndex> index; // none unless it was built; the watched view has its own
    const IndexedFileTree files;
    std::optional<SnapshotSearch> snapshotSearch; // only in a snapshot
    const std::shared_ptr<const SupportStore> store;

    mutable std::set<std::string> overlay; // see setOverlay

    // The installation's folders as the services hand them out, in UTF-16.
    const std::u16string root;
    const std::optional<std::u16string> supportPackageRoot;
    const std::vector<std::u16string> kelPath;
    const std::vector<std::vector<std::u16string>> sourceCodeDirs;
};

// The state of the open session.
// Errors: std::logic_error outside a session.
[[nodiscard]] const SessionState& currentSession();

} // namespace tessgen::standalone

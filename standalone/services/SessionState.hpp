// The state that an open session answers from.
//
// Threads: immutable; its members allow concurrent const use.
#pragma once

#include "standalone/Session.hpp"
#include "standalone/files/RealFileTree.hpp"
#include "standalone/index/SearchIndex.hpp"
#include "standalone/manifest/Installation.hpp"
#include "standalone/search/SnapshotSearch.hpp"
#include "standalone/store/SupportStore.hpp"

#include <optional>
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

    const Installation installation;
    const RealFileTree disk;
    const std::optional<SearchIndex> index; // none unless it was built
    const IndexedFileTree files;
    std::optional<SnapshotSearch> snapshotSearch; // none in the live view
    const std::optional<SupportStore> store;

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

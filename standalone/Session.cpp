#include "standalone/Session.hpp"

#include "standalone/files/OverlayFileTree.hpp"
#include "standalone/index/InstallationDisk.hpp"
#include "standalone/search/NameSearch.hpp"
#include "standalone/services/SessionState.hpp"
#include "standalone/text/Text.hpp"

#include <atomic>
#include <memory>
#include <optional>
#include <set>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace tessgen::standalone {

namespace {

std::atomic<const SessionState*> current = nullptr; // NOLINT: the host's services are free functions

// The texts of an installation are UTF-8, which reading the manifest has checked.
std::u16string inUTF16(const std::string& text) {
    return toUTF16(text).value();
}

std::vector<std::u16string> inUTF16(const std::vector<std::string>& texts) {
    std::vector<std::u16string> converted;
    converted.reserve(texts.size());
    for (const auto& text : texts) {
        converted.push_back(inUTF16(text));
    }
    return converted;
}

std::vector<std::vector<std::u16string>> inUTF16(const std::vector<std::vector<std::string>>& lists) {
    std::vector<std::vector<std::u16string>> converted;
    converted.reserve(lists.size());
    for (const auto& texts : lists) {
        converted.push_back(inUTF16(texts));
    }
    return converted;
}

std::optional<std::u16string> inUTF16(const std::optional<std::string>& text) {
    return text ? std::optional(inUTF16(*text)) : std::nullopt;
}

// Without its roots an installation would silently answer nothing. A search folder may be missing.
Installation withRoots(Installation installation) {
    requireFolder(installation, "root", installation.root);
    if (installation.supportPackageRoot) {
        requireFolder(installation, "supportPackageRoot", *installation.supportPackageRoot);
    }
    return installation;
}

std::optional<SearchIndex> openIndex(const Installation& installation) {
    return isIndexBuilt(installation) ? std::optional<SearchIndex>(std::in_place, *installation.searchIndex)
                                      : std::nullopt;
}

const SearchIndex* pointerTo(const std::optional<SearchIndex>& index) {
    return index ? &*index : nullptr;
}

// The watched view opens it itself.
std::shared_ptr<const SupportStore> openStore(const Installation& installation, const WatchedView* watched) {
    return installation.supportStore && watched == nullptr
               ? std::make_shared<const SupportStore>(*installation.supportStore, installation.root)
               : nullptr;
}

// Null, with the reason, when the system cannot watch.
std::unique_ptr<WatchedView> watch(const Installation& installation, std::string& reason) {
    try {
        return std::make_unique<WatchedView>(installation);
    } catch (const CannotWatch& error) {
        reason = error.what();
        return nullptr;
    }
}

} // namespace

SessionState::SessionState(Installation opened, View view)
    : installation(withRoots(std::move(opened))),
      watched(view == View::watched ? watch(installation, notWatched) : nullptr),
      index(watched ? std::nullopt : openIndex(installation)), files(pointerTo(index), disk),
      store(openStore(installation, watched.get())), root(inUTF16(installation.root)),
      supportPackageRoot(inUTF16(installation.supportPackageRoot)), kelPath(inUTF16(installation.kelPath)),
      sourceCodeDirs(inUTF16(installation.sourceCode)) {
    if (view == View::snapshot) {
        const InstallationDisk now(installation, index);
        snapshotSearch.emplace(installation, files, now.files());
        now.requireSameRoot();
    }
}

std::vector<FoundPlace> SessionState::find(std::u16string_view name) const {
    if (watched) {
        return watched->find(name);
    }
    if (snapshotSearch) {
        return snapshotSearch->find(name);
    }
    const InstallationDisk now(installation, index);
    const OverlayFileTree withOverlay(now.files(), overlay);
    auto places = NameSearch(installation, overlay.empty() ? now.files() : withOverlay).find(name);
    now.requireSameRoot();
    return places;
}

std::vector<std::string> SessionState::symbols() const {
    if (snapshotSearch) {
        return snapshotSearch->symbols();
    }
    return watched && watched->watchesAll() ? watched->symbols()
                                            : SnapshotSearch(installation, OverlayFileTree(files, overlay)).symbols();
}

void SessionState::setOverlay(std::set<std::string> added) const {
    if (watched) {
        watched->setOverlay(added);
    }
    overlay = std::move(added);
}

const SessionState& currentSession() {
    const auto* state = current.load();
    if (state == nullptr) {
        throw std::logic_error("a service of the host was asked for outside a session: open a Session first");
    }
    return *state;
}

Session::Session(const std::string& fileOrFolder, View view) : Session(readInstallation(fileOrFolder), view) {}

Session::Session(Installation&& installation, View view)
    : state_(std::make_unique<const SessionState>(std::move(installation), view)) {
    const SessionState* none = nullptr;
    if (!current.compare_exchange_strong(none, state_.get())) {
        throw std::logic_error("this process has an open session already: close it before opening another");
    }
}

Session::~Session() {
    current = nullptr;
}

} // namespace tessgen::standalone

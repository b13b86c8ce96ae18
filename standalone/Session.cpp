#include "standalone/Session.hpp"

#include "standalone/search/NameSearch.hpp"
#include "standalone/services/SessionState.hpp"
#include "standalone/text/Text.hpp"

#include <atomic>
#include <memory>
#include <optional>
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

// What was found below a root that is gone, or that another folder took the place of, is no answer.
void requireSameRoot(const Installation& installation, const DirectoryHandle& top) {
    if (!top.isAtItsPath()) {
        requireFolder(installation, "root", installation.root);
        throw std::runtime_error(installation.manifest + ": key \"root\": another folder took the place of "
                                 + installation.root + ": try again");
    }
}

std::optional<SearchIndex> openIndex(const Installation& installation) {
    const auto& file = installation.searchIndex;
    return file && RealFileTree().kindOf(*file) ? std::optional<SearchIndex>(std::in_place, *file) : std::nullopt;
}

const SearchIndex* pointerTo(const std::optional<SearchIndex>& index) {
    return index ? &*index : nullptr;
}

std::optional<SupportStore> openStore(const Installation& installation) {
    return installation.supportStore
               ? std::optional<SupportStore>(std::in_place, *installation.supportStore, installation.root)
               : std::nullopt;
}

} // namespace

SessionState::SessionState(Installation opened, View view)
    : installation(withRoots(std::move(opened))), index(openIndex(installation)), files(pointerTo(index), disk),
      store(openStore(installation)), root(inUTF16(installation.root)),
      supportPackageRoot(inUTF16(installation.supportPackageRoot)), kelPath(inUTF16(installation.kelPath)),
      sourceCodeDirs(inUTF16(installation.sourceCode)) {
    if (view == View::snapshot) {
        const DirectoryHandle top(installation.root);
        const RealFileTree now(&top);
        snapshotSearch.emplace(installation, files, IndexedFileTree(pointerTo(index), now, &top));
        requireSameRoot(installation, top);
    }
}

std::vector<FoundPlace> SessionState::find(std::u16string_view name) const {
    if (snapshotSearch) {
        return snapshotSearch->find(name);
    }
    const DirectoryHandle top(installation.root); // most of the search path lies in it
    const RealFileTree now(&top);
    auto places = NameSearch(installation, IndexedFileTree(pointerTo(index), now, &top)).find(name);
    requireSameRoot(installation, top);
    return places;
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

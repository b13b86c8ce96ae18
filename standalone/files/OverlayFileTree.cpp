#include "standalone/files/OverlayFileTree.hpp"

#include "standalone/text/PathText.hpp"

#include <algorithm>

namespace tessgen::standalone {

std::optional<std::vector<FileTree::Entry>> OverlayFileTree::entries(const std::string& folder,
                                                                     const EntryFilter& wanted) const {
    auto entries = files_.entries(folder, wanted);
    const auto above = joinPath(folder, "");
    for (auto path = added_.upper_bound(above); path != added_.end() && path->starts_with(above); ++path) {
        const auto rest = path->substr(above.size());
        const auto name = rest.substr(0, rest.find('/'));
        entries = std::move(entries).value_or(std::vector<Entry>());
        if (wanted.accepts(name)) {
            std::erase_if(*entries, [&](const Entry& entry) { return entry.name == name; });
            entries->push_back({name, name == rest ? Kind::file : Kind::folder});
        }
    }
    return entries;
}

std::optional<FileTree::Kind> OverlayFileTree::kindOf(const std::string& path) const {
    if (added_.contains(path)) {
        return Kind::file;
    }
    const auto below = added_.upper_bound(joinPath(path, ""));
    return below != added_.end() && isBelow(*below, path) ? Kind::folder : files_.kindOf(path);
}

} // namespace tessgen::standalone

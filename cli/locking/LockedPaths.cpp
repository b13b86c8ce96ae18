#include "cli/locking/LockedPaths.hpp"

#include "standalone/text/Text.hpp"

#include <algorithm>
#include <utility>

namespace tessgen::cli {

namespace {

constexpr std::u16string_view here = u"./";

// Whether a relative path could be taken for another kind of path.
bool needsHere(std::u16string_view path) {
    return path.starts_with(u'<');
}

} // namespace

LockedPaths::LockedPaths(const standalone::SessionState& session) {
    const auto add = [this](std::u16string folder, std::u16string_view word) {
        folder += folder.ends_with(u'/') ? u"" : u"/";
        bases_.push_back({std::move(folder), std::u16string(word)});
    };
    const auto manifest = standalone::toUTF16(session.installation.manifest).value_or(u"/");
    add(manifest.substr(0, manifest.rfind(u'/') + 1), u"");
    add(session.root, u"<root>/");
    if (session.supportPackageRoot) {
        add(*session.supportPackageRoot, u"<packages>/");
    }
    std::stable_sort(bases_.begin(), bases_.end(),
                     [](const Base& a, const Base& b) { return a.folder.size() > b.folder.size(); });
}

std::u16string LockedPaths::shortened(const std::u16string& path) const {
    for (const auto& [folder, word] : bases_) {
        if (path.size() > folder.size() && path.starts_with(folder) && path[folder.size()] != u'/') {
            const auto below = path.substr(folder.size());
            return (word.empty() && needsHere(below) ? std::u16string(here) : word) + below;
        }
    }
    return path;
}

std::u16string LockedPaths::whole(const std::u16string& path) const {
    if (path.starts_with(u'/')) {
        return path;
    }
    const auto base = std::find_if(bases_.begin(), bases_.end(), [&](const Base& b) {
        return b.word.empty() ? !needsHere(path) : path.starts_with(b.word);
    });
    if (base == bases_.end()) {
        return path;
    }
    const auto below = path.substr(base->word.size());
    return base->folder + below.substr(below.starts_with(here) ? here.size() : 0);
}

} // namespace tessgen::cli

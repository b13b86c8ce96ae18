#include "standalone/search/SnapshotSearch.hpp"

#include "standalone/files/MountPoints.hpp"
#include "standalone/search/SearchPathWalk.hpp"
#include "standalone/text/Text.hpp"

#include <cstdint>
#include <optional>
#include <string>

namespace tessgen::standalone {

SnapshotSearch::SnapshotSearch(const Installation& installation, const FileTree& files)
    : SnapshotSearch(installation, files, files) {}

SnapshotSearch::SnapshotSearch(const Installation& installation, const FileTree& files, const FileTree& now)
    : files_(files, searchedEntries(installation.extensions)), search_(installation, files_),
      index_(installation.extensions), builtins_(installation.builtins) {
    auto mounted = namesOfMountPoints();
    std::erase_if(mounted, [this](const auto& name) {
        return !files_.wanted().accepts(name); // mostly, none is left to compare each file with
    });
    const auto list = [&](const std::string& folder) {
        auto entries = files_.entriesBy(now, folder);
        if (entries) {
            doubtMountPoints(*entries, mounted);
        }
        return entries;
    };
    const SearchedDisk disk{installation.extensions, list, files_};
    std::uint32_t number = 0;
    for (const std::string& folder : installation.searchPath) {
        addSearchFolder(number++, folder, disk, index_, incomplete_);
    }
    index_.close();
}

std::vector<FoundPlace> SnapshotSearch::find(std::u16string_view name) const {
    const bool isPath = name.find(u'/') != std::u16string_view::npos;
    const std::optional<std::string> symbol = isPath ? std::nullopt : toUTF8(name);
    if (!symbol || incomplete_.contains(*symbol)) {
        return search_.find(name);
    }
    std::vector<FoundPlace> places = index_.find(*symbol);
    builtins_.add(name, places);
    return places;
}

} // namespace tessgen::standalone

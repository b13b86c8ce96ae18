#include "standalone/watch/WatchedSearch.hpp"

#include <algorithm>

namespace tessgen::standalone {

WatchedSearch::WatchedSearch(const Installation& installation, FolderWatch& watch)
    : installation_(&installation),
      files_(watch, searchedEntries(installation.extensions)), disk_{installation.extensions,
                                                                     [this](const std::string& folder) {
                                                                         return files_.entries(folder, {});
                                                                     },
                                                                     files_} {}

void WatchedSearch::startOver(const FileTree& disk) {
    files_.clear();
    addAllAnew(disk);
}

void WatchedSearch::apply(const std::vector<FolderChange>& changes, const FileTree& disk) {
    std::set<Number> changed;
    for (const FolderChange& change : changes) {
        const auto users = files_.drop(change);
        changed.insert(users.begin(), users.end());
    }
    if (!changed.empty()) {
        addAnew(changed, disk);
    }
}

void WatchedSearch::addAllAnew(const FileTree& disk) {
    index_.emplace(installation_->extensions);
    incomplete_.assign(installation_->searchPath.size(), {});
    std::set<Number> all;
    for (Number number = 0; number < incomplete_.size(); ++number) {
        all.insert(all.end(), number);
    }
    addAnew(all, disk);
}

void WatchedSearch::addAnew(const std::set<Number>& searchFolders, const FileTree& disk) {
    for (const Number number : searchFolders) {
        files_.askFor(number, disk);
        incomplete_[number] = {};
        addSearchFolder(number, installation_->searchPath[number], disk_, *index_, incomplete_[number]);
    }
    index_->close();
    partial_.clear();
    for (Number number = 0; number < incomplete_.size(); ++number) {
        if (!incomplete_[number].isEmpty()) {
            partial_.push_back(number);
        }
    }
    if (index_->isWorthRebuilding()) {
        addAllAnew(disk);
    }
}

bool WatchedSearch::isKept(std::string_view symbol) const {
    return std::none_of(partial_.begin(), partial_.end(),
                        [&](Number number) { return incomplete_[number].contains(symbol); });
}

std::vector<FoundPlace> WatchedSearch::find(std::string_view symbol, const FileTree& disk) const {
    const NameSearch search(*installation_, disk);
    const auto matches = index_->matches(symbol);
    std::vector<FoundPlace> places;
    auto match = matches.begin();
    const auto addBefore = [&](Number number) {
        for (; match != matches.end() && match->searchFolder < number; ++match) {
            places.push_back(index_->placeOf(match->file));
        }
    };
    for (const Number number : partial_) {
        if (incomplete_[number].contains(symbol)) {
            addBefore(number);
            search.addSymbolFiles(symbol, installation_->searchPath[number], places);
            match =
                std::find_if(match, matches.end(), [number](const auto& other) { return other.searchFolder > number; });
        }
    }
    addBefore(static_cast<Number>(incomplete_.size()));
    return places;
}

} // namespace tessgen::standalone

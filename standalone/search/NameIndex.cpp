#include "standalone/search/NameIndex.hpp"

#include "standalone/text/Hash.hpp"
#include "standalone/text/Text.hpp"

#include <algorithm>
#include <stdexcept>
#include <tuple>
#include <utility>

namespace tessgen::standalone {

NameIndex::NameIndex(std::vector<std::string> extensions) : extensions_(std::move(extensions)) {
    // Untouched memory is free, while growing copies.
    constexpr std::size_t usualSize = std::size_t{1} << 20U;
    folderTexts_.reserve(usualSize);
    names_.reserve(usualSize);
    files_.reserve(usualSize / sizeof(File));
    files_.push_back({0, 0, none});
}

void NameIndex::beginSearchFolder(std::uint32_t number) {
    firstFolders_.resize(std::max<std::size_t>(firstFolders_.size(), number + std::size_t{1}));
    firstFolders_[number] = static_cast<std::uint32_t>(folders_.size());
    searchFolder_ = number;
}

std::uint32_t NameIndex::addFolder(std::string_view path, std::string_view prefix, bool isPlainToo) {
    const std::size_t begin = folderTexts_.size();
    folderTexts_.append(path).append(path.ends_with('/') ? "" : "/");
    const std::size_t end = folderTexts_.size();
    folderTexts_.append(prefix);
    folders_.push_back({begin, end, folderTexts_.size(), searchFolder_, isPlainToo && !prefix.empty()});
    return static_cast<std::uint32_t>(folders_.size() - 1);
}

void NameIndex::add(std::string_view name, std::uint32_t folder, std::uint32_t extension) {
    files_.back().place = static_cast<std::uint32_t>(folder * extensions_.size()) + extension;
    names_.append(name);
    files_.push_back({static_cast<std::uint32_t>(names_.size()), 0, none});
}

void NameIndex::close() {
    if (names_.size() >= none || folders_.size() * extensions_.size() >= none) {
        throw std::runtime_error(
            "the search path holds too many files for one snapshot of the disk; remove folders from it");
    }
    const std::size_t count = files_.size() - 1;
    if (chains_.empty()) {
        std::size_t chains = 1;
        while (chains < count) {
            chains *= 2;
        }
        chains_.assign(chains, none);
        for (std::size_t file = count; file-- > 0;) {
            link(file);
        }
    } else {
        isInOrder_ = isInOrder_ && linked_ == count;
        for (std::size_t file = linked_; file < count; ++file) {
            link(file);
        }
    }
    linked_ = count;
}

void NameIndex::link(std::size_t file) {
    std::uint32_t& first = chains_[chainOf(nameOf(file))];
    files_[file].next = first;
    first = static_cast<std::uint32_t>(file);
}

template <typename Visit>
void NameIndex::forEachFile(std::string_view symbol, Visit visit) const {
    const std::size_t begin = symbol.rfind('.') + 1; // 0 when there is no dot
    const std::string_view prefix = symbol.substr(0, begin);
    const std::string_view name = symbol.substr(begin);
    for (auto file = firstOf(prefix, name, chains_[chainOf(name)]); file != none;
         file = firstOf(prefix, name, files_[file].next)) {
        visit(file);
    }
}

std::vector<FoundPlace> NameIndex::find(std::string_view symbol) const {
    std::vector<FoundPlace> places;
    forEachFile(symbol, [&](std::uint32_t file) { places.push_back(placeOf(file)); });
    return places;
}

std::vector<NameIndex::Match> NameIndex::matches(std::string_view symbol) const {
    std::vector<Match> found;
    forEachFile(symbol, [&](std::uint32_t file) {
        found.push_back({folders_[folderOf(files_[file])].searchFolder, file});
    });
    if (!isInOrder_) {
        std::sort(found.begin(), found.end(), [](const Match& a, const Match& b) {
            return std::tie(a.searchFolder, a.file) < std::tie(b.searchFolder, b.file);
        });
    }
    return found;
}

FoundPlace NameIndex::placeOf(std::uint32_t file) const {
    const std::uint32_t place = files_[file].place;
    const Folder& folder = folders_[folderOf(files_[file])];
    const std::string_view name = nameOf(file);
    const std::string& extension = extensions_[place % extensions_.size()];
    const std::size_t length = folder.prefix - folder.path;
    std::string path;
    path.reserve(length + name.size() + 1 + extension.size());
    path.assign(folderTexts_, folder.path, length).append(name).append(1, '.').append(extension);
    return {toUTF16(path).value(), {}};
}

bool NameIndex::isWorthRebuilding() const {
    constexpr std::size_t few = 4096;
    return files_.size() > few + 2 * chains_.size();
}

std::vector<std::string> NameIndex::symbols() const {
    std::vector<std::string> all;
    for (std::size_t file = 0; file < linked_; ++file) {
        const std::string_view name = nameOf(file);
        const auto addUnlessThere = [&](std::string_view prefix) {
            if (firstOf(prefix, name, chains_[chainOf(name)]) == file) {
                all.emplace_back(prefix).append(name);
            }
        };
        const Folder& folder = folders_[folderOf(files_[file])];
        addUnlessThere(prefixOf(folder));
        if (folder.isPlainToo) {
            addUnlessThere("");
        }
    }
    return all;
}

std::string_view NameIndex::prefixOf(const Folder& folder) const {
    return std::string_view(folderTexts_).substr(folder.prefix, folder.end - folder.prefix);
}

std::string_view NameIndex::nameOf(std::size_t file) const {
    const std::size_t begin = files_[file].name;
    return std::string_view(names_).substr(begin, files_[file + 1].name - begin);
}

std::size_t NameIndex::chainOf(std::string_view name) const {
    return TextHash()(name) & (chains_.size() - 1);
}

bool NameIndex::isHere(std::string_view prefix, std::uint32_t number) const {
    const Folder& folder = folders_[number];
    return (prefixOf(folder) == prefix || (prefix.empty() && folder.isPlainToo))
           && number >= firstFolders_[folder.searchFolder];
}

std::uint32_t NameIndex::firstOf(std::string_view prefix, std::string_view name, std::uint32_t file) const {
    while (file != none && !(nameOf(file) == name && isHere(prefix, folderOf(files_[file])))) {
        file = files_[file].next;
    }
    return file;
}

} // namespace tessgen::standalone

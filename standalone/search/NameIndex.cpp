#include "standalone/search/NameIndex.hpp"

#include "standalone/text/Hash.hpp"
#include "standalone/text/Text.hpp"

#include <stdexcept>
#include <utility>

namespace tessgen::standalone {

NameIndex::NameIndex(std::vector<std::string> extensions) : extensions_(std::move(extensions)) {
    // Untouched memory is free, while growing copies.
    constexpr std::size_t usualSize = std::size_t{1} << 20U;
    folderTexts_.reserve(usualSize);
    names_.reserve(usualSize);
    files_.reserve(usualSize / sizeof(File));
}

std::uint32_t NameIndex::addFolder(std::string_view path, std::string_view prefix, bool isPlainToo) {
    const std::size_t begin = folderTexts_.size();
    folderTexts_.append(path).append(path.ends_with('/') ? "" : "/");
    const std::size_t end = folderTexts_.size();
    folderTexts_.append(prefix);
    folders_.push_back({begin, end, folderTexts_.size(), isPlainToo && !prefix.empty()});
    return static_cast<std::uint32_t>(folders_.size() - 1);
}

void NameIndex::add(std::string_view name, std::uint32_t folder, std::uint32_t extension) {
    const auto place = static_cast<std::uint32_t>(folder * extensions_.size()) + extension;
    files_.push_back({static_cast<std::uint32_t>(names_.size()), place, none});
    names_.append(name);
}

void NameIndex::close() {
    if (names_.size() >= none || folders_.size() * extensions_.size() >= none) {
        throw std::runtime_error(
            "the search path holds too many files for one snapshot of the disk; remove folders from it");
    }
    const std::size_t count = files_.size();
    files_.push_back({static_cast<std::uint32_t>(names_.size()), 0, none});
    std::size_t chains = 1;
    while (chains < count) {
        chains *= 2;
    }
    chains_.assign(chains, none);
    for (std::size_t file = count; file-- > 0;) {
        std::uint32_t& first = chains_[chainOf(nameOf(file))];
        files_[file].next = first;
        first = static_cast<std::uint32_t>(file);
    }
}

std::vector<FoundPlace> NameIndex::find(std::string_view symbol) const {
    const std::size_t begin = symbol.rfind('.') + 1; // 0 when there is no dot
    const std::string_view prefix = symbol.substr(0, begin);
    const std::string_view name = symbol.substr(begin);
    std::vector<FoundPlace> places;
    std::string path;
    for (auto number = firstOf(prefix, name, chains_[chainOf(name)]); number != none;
         number = firstOf(prefix, name, files_[number].next)) {
        const File& file = files_[number];
        const Folder& folder = folderOf(file);
        const std::string& extension = extensions_[file.place % extensions_.size()];
        const std::size_t length = folder.prefix - folder.path;
        path.reserve(length + name.size() + 1 + extension.size());
        path.assign(folderTexts_, folder.path, length).append(name).append(1, '.').append(extension);
        places.push_back({toUTF16(path).value(), {}});
    }
    return places;
}

std::vector<std::string> NameIndex::symbols() const {
    std::vector<std::string> all;
    for (std::size_t file = 0; file + 1 < files_.size(); ++file) {
        const std::string_view name = nameOf(file);
        const auto addUnlessThere = [&](std::string_view prefix) {
            if (firstOf(prefix, name, chains_[chainOf(name)]) == file) {
                all.emplace_back(prefix).append(name);
            }
        };
        const Folder& folder = folderOf(files_[file]);
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

std::uint32_t NameIndex::firstOf(std::string_view prefix, std::string_view name, std::uint32_t file) const {
    const auto isHere = [&](const Folder& folder) {
        return prefixOf(folder) == prefix || (prefix.empty() && folder.isPlainToo);
    };
    while (file != none && !(nameOf(file) == name && isHere(folderOf(files_[file])))) {
        file = files_[file].next;
    }
    return file;
}

} // namespace tessgen::standalone

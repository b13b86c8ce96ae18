// Indexes what names may lead to: the files of every symbol below a folder of the search path, those of one symbol in
// the order of NameSearch.
//
// Threads: any, at the same time, for different indexes.
#pragma once

#include "standalone/files/FileTree.hpp"
#include "standalone/search/IncompleteNames.hpp"
#include "standalone/search/NameIndex.hpp"

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace tessgen::standalone {

// The entries that any name can lead to. Lifetime: the extensions outlive the filter.
[[nodiscard]] EntryFilter searchedEntries(const std::vector<std::string>& extensions);

// Where a walk finds things.
struct SearchedDisk {
    const std::vector<std::string>& extensions;
    // Lists the `searchedEntries` of a folder, as FileTree::entries does, with doubts about mount points.
    std::function<std::optional<std::vector<FileTree::Entry>>(const std::string& folder)> list;
    const FileTree& links; // says what links lead to
};

// Adds the files below a folder of the search path, which is one by number, to the index. A std::system_error of the
// disk makes the names incomplete that may lead to what it kept from being read. Errors: all others of the disk.
void addSearchFolder(std::uint32_t number, const std::string& folder, const SearchedDisk& disk, NameIndex& index,
                     IncompleteNames& incomplete);

} // namespace tessgen::standalone

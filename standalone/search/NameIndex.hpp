// The files of every symbol of a search path, in the order of preference: a hash table over flat arrays.
//
// Symbols are UTF-8: plain ("f") or dotted ("p.q.f"). A file is its folder, the last part of its symbol, and one of the
// extensions. Adding a file only appends, since few symbols are ever looked up.
// Threads: const operations may be called concurrently.
#pragma once

#include "standalone/search/NameSearch.hpp"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace tessgen::standalone {

class NameIndex {
public:
    explicit NameIndex(std::vector<std::string> extensions);

    // Returns the number with which to add the folder's files. They belong to the symbols `prefix` + `name`, and to the
    // plain `name` too when `isPlainToo`.
    std::uint32_t addFolder(std::string_view path, std::string_view prefix, bool isPlainToo = false);
    // Adds a file after those of the same symbols; `name` has no dot.
    void add(std::string_view name, std::uint32_t folder, std::uint32_t extension);
    // Call once, after the last file is added and before the first look-up.
    // Errors: std::runtime_error for names of 4 GiB or more together, or as many folders.
    void close();

    // The files of a symbol, in the order in which they were added.
    [[nodiscard]] std::vector<FoundPlace> find(std::string_view symbol) const;

    // Every symbol once.
    [[nodiscard]] std::vector<std::string> symbols() const;

private:
    struct Folder {
        std::size_t path; // offsets in `folderTexts_`, which holds the path with a "/", then the prefix
        std::size_t prefix;
        std::size_t end;
        bool isPlainToo;
    };
    struct File {
        std::uint32_t name;  // offset in `names_`; the name ends at the offset of the next file
        std::uint32_t place; // the folder's number times the number of extensions, and the extension's
        std::uint32_t next;  // the next file of its chain; `none` after the last
    };
    static constexpr std::uint32_t none = UINT32_MAX;

    [[nodiscard]] const Folder& folderOf(const File& file) const { return folders_[file.place / extensions_.size()]; }
    [[nodiscard]] std::string_view prefixOf(const Folder& folder) const;
    [[nodiscard]] std::string_view nameOf(std::size_t file) const;
    [[nodiscard]] std::size_t chainOf(std::string_view name) const;
    // The first file of the symbol `prefix` + `name` from `file` on along its chain, or `none`.
    [[nodiscard]] std::uint32_t firstOf(std::string_view prefix, std::string_view name, std::uint32_t file) const;

    const std::vector<std::string> extensions_;
    std::string folderTexts_;
    std::vector<Folder> folders_;
    std::string names_;                 // of the files, one after the other
    std::vector<File> files_;           // after close(), one more that marks the end of the names
    std::vector<std::uint32_t> chains_; // hash table: the first file of each chain; a power of two
};

} // namespace tessgen::standalone

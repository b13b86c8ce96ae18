// The files of every symbol of a search path, in the order of preference: a hash table over flat arrays.
//
// Symbols are UTF-8: plain ("f") or dotted ("p.q.f"). A file is its folder, the last part of its symbol, and one of the
// extensions. Adding a file only appends, since few symbols are ever looked up. After `close`, the files of a search
// folder can be added anew: those added before no longer count, but still take room.
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

    // The folders that are added from now on are, or lie below, this folder of the search path: its number, from 0 on,
    // each but the first time one that is known or the next. What was added for it before no longer counts.
    void beginSearchFolder(std::uint32_t number);

    // Returns the number with which to add the folder's files. They belong to the symbols `prefix` + `name`, and to the
    // plain `name` too when `isPlainToo`.
    std::uint32_t addFolder(std::string_view path, std::string_view prefix, bool isPlainToo = false);
    // Adds a file after those of the same symbols and search folder; `name` has no dot.
    void add(std::string_view name, std::uint32_t folder, std::uint32_t extension);
    // Call before the first look-up, and again after files were added anew.
    // Errors: std::runtime_error for names of 4 GiB or more together, or as many folders.
    void close();

    // The places of a symbol's files, in the order in which they were added. For an index without files that were added
    // anew.
    [[nodiscard]] std::vector<FoundPlace> find(std::string_view symbol) const;

    struct Match {
        std::uint32_t searchFolder;
        std::uint32_t file;
    };
    // The files of a symbol, by search folders, and in the order in which they were added.
    [[nodiscard]] std::vector<Match> matches(std::string_view symbol) const;
    [[nodiscard]] FoundPlace placeOf(std::uint32_t file) const;

    // Whether so much no longer counts that a new index is smaller by half, or quicker.
    [[nodiscard]] bool isWorthRebuilding() const;

    // Every symbol once.
    [[nodiscard]] std::vector<std::string> symbols() const;

private:
    struct Folder {
        std::size_t path; // offsets in `folderTexts_`, which holds the path with a "/", then the prefix
        std::size_t prefix;
        std::size_t end;
        std::uint32_t searchFolder;
        bool isPlainToo;
    };
    struct File {
        std::uint32_t name;  // offset in `names_`; the name ends at the offset of the next file
        std::uint32_t place; // the folder's number times the number of extensions, and the extension's
        std::uint32_t next;  // the next file of its chain; `none` after the last
    };
    static constexpr std::uint32_t none = UINT32_MAX;

    [[nodiscard]] std::uint32_t folderOf(const File& file) const {
        return file.place / static_cast<std::uint32_t>(extensions_.size());
    }
    // Whether the symbols of a folder that counts begin with `prefix`.
    [[nodiscard]] bool isHere(std::string_view prefix, std::uint32_t number) const;
    [[nodiscard]] std::string_view prefixOf(const Folder& folder) const;
    [[nodiscard]] std::string_view nameOf(std::size_t file) const;
    void link(std::size_t file);
    [[nodiscard]] std::size_t chainOf(std::string_view name) const;
    // The first file that counts of the symbol `prefix` + `name`, from `file` on along its chain, or `none`.
    [[nodiscard]] std::uint32_t firstOf(std::string_view prefix, std::string_view name, std::uint32_t file) const;
    // Visits the files that count of a symbol, along its chain.
    template <typename Visit>
    void forEachFile(std::string_view symbol, Visit visit) const;

    const std::vector<std::string> extensions_;
    std::string folderTexts_;
    std::vector<Folder> folders_;
    std::vector<std::uint32_t> firstFolders_; // of each search folder: those before it no longer count
    std::string names_;                       // of the files, one after the other
    std::vector<File> files_;                 // with one more that marks the end of the names
    std::vector<std::uint32_t> chains_;       // hash table: the first file of each chain; a power of two
    std::uint32_t searchFolder_ = 0;          // of the folders that are added
    std::size_t linked_ = 0;                  // files that are in chains
    bool isInOrder_ = true;                   // each chain is in the order of matches
};

} // namespace tessgen::standalone

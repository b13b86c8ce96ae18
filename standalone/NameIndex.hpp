// The files of every symbol of a search path, in the order of preference: a hash table over flat arrays.
//
// Symbols are UTF-8: plain ("f") or dotted ("p.q.f"). A file is its folder, the last part of the symbol, and one of
// the extensions. Nothing but texts and numbers is held, so that an index can be kept in a file.
// Threads: const operations may be called concurrently.
#pragma once

#include "standalone/NameSearch.hpp"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace tessgen::standalone {

class NameIndex {
public:
    explicit NameIndex(const std::vector<std::string>& extensions);

    // The number by which a folder's files are added.
    std::uint32_t addFolder(std::string_view path);
    // Adds a file behind those that the symbol `prefix` + `name` has; `name` is its last part.
    void add(std::string_view prefix, std::string_view name, std::uint32_t folder, std::uint32_t extension);

    // The files of a symbol, in the order in which they were added.
    std::vector<FoundPlace> find(std::string_view symbol) const;

    std::size_t size() const { return symbols_.size(); }
    // Every symbol once, in the order of their first files.
    std::string_view symbolAt(std::size_t index) const;

private:
    struct File {
        std::uint32_t folder;
        std::uint32_t extension;
        std::uint32_t next; // the symbol's next file; `none` after the last
    };
    struct Symbol {
        std::size_t begin; // in `texts_`
        std::uint32_t length;
        std::uint32_t hash;
        File first;         // here, since most symbols have one, and each look elsewhere costs
        std::uint32_t last; // `none` when there is one
    };
    static constexpr std::uint32_t none = UINT32_MAX;

    std::string_view textOf(const Symbol& symbol) const { return {texts_.data() + symbol.begin, symbol.length}; }
    // The slot that holds the symbol's number, or the empty one where it belongs.
    std::size_t slotOf(std::uint32_t hash, std::string_view prefix, std::string_view name) const;
    void grow();

    std::string texts_;                   // of symbols
    std::vector<std::u16string> folders_; // with a "/" behind them, as files are handed out
    std::vector<std::u16string> extensions_;
    std::vector<Symbol> symbols_;
    std::vector<File> files_;          // of all symbols, without the first ones
    std::vector<std::uint32_t> slots_; // numbers of symbols, or `none`; a power of two, at most half of them taken
};

} // namespace tessgen::standalone

// The search order of the host: below each folder of the search path in turn, the places that hold a symbol's files.
//
// A symbol is plain ("f") or has packages before it ("p.q.f"). Names with "/" are no symbols.
// Threads: any.
#pragma once

#include "standalone/files/FileTree.hpp"

#include <array>
#include <span>
#include <string_view>
#include <vector>

namespace tessgen::standalone {

// Each form of place is searched with every extension in order.
enum class SearchForm { // "f"                "p.q.f"
    ownClass,           // @f/f.EXT           +p/+q/@f/f.EXT
    folder,             // f.EXT              +p/+q/f.EXT
    otherClasses,       // @Class/f.EXT       none; the classes as classFolders() orders them
    privateFolder,      // private/f.EXT      none
    packageClass,       // none               +p/@q/f.EXT
};

// The forms of a symbol, the preferred one first. NameSearch looks for them, SnapshotSearch indexes by them.
inline constexpr std::array plainForms = {SearchForm::ownClass, SearchForm::folder, SearchForm::otherClasses,
                                          SearchForm::privateFolder};
inline constexpr std::array dottedForms = {SearchForm::ownClass, SearchForm::folder, SearchForm::packageClass};

constexpr std::span<const SearchForm> searchForms(bool isDotted) {
    return isDotted ? std::span<const SearchForm>(dottedForms) : std::span<const SearchForm>(plainForms);
}

// Lexical: the form by which a symbol (UTF-8) leads to a file that it does lead to.
//   "f", "/w/@C/f.vk" -> otherClasses
[[nodiscard]] SearchForm formOf(std::string_view symbol, std::string_view path);

// The entries that are named like class folders, in the order of their UTF-16 code units. Left out are names that are
// not UTF-8.
// Lifetime: the pointers are into `entries`.
[[nodiscard]] std::vector<const FileTree::Entry*> classFolders(const std::vector<FileTree::Entry>& entries);

} // namespace tessgen::standalone

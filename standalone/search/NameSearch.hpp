// The host's own look-up of a name: every place on the search path, then the built-ins.
//
// Threads: any, at the same time.
#pragma once

#include "standalone/files/FileTree.hpp"
#include "standalone/manifest/Installation.hpp"

#include <string>
#include <string_view>
#include <vector>

namespace tessgen::standalone {

// A place where a name is found: the host's line about it, and the partner text beside the line.
struct FoundPlace {
    std::u16string line; // a file's absolute path, or a built-in's description
    std::u16string partner;
};

class NameSearch {
public:
    // Lifetime: both outlive the search.
    NameSearch(const Installation& installation, const FileTree& files);

    // The places of `name` in the order of preference; empty when there are none. For each search folder in order,
    // the files that exist:
    //   "f", "p.q.f" -> those of each SearchForm
    //   "a/b"        -> a/b, then a/b.EXT with each extension in order
    //   "/a/b"       -> itself, once for all folders
    // Then, for a name without "." and "/", built-in functions, and after them methods and constructors.
    // Errors: those of the file tree.
    [[nodiscard]] std::vector<FoundPlace> find(std::u16string_view name) const;

    // Adds the files of a plain or dotted name (UTF-8) below one folder of the search path.
    // Errors: those of the file tree.
    void addSymbolFiles(std::string_view symbol, const std::string& searchFolder,
                        std::vector<FoundPlace>& places) const;

private:
    const Installation* installation_;
    const FileTree* files_;
};

// Adds the built-ins of that name, functions before methods and constructors. A dotted name has none.
void addBuiltins(std::u16string_view name, const std::vector<Builtin>& builtins, std::vector<FoundPlace>& places);

} // namespace tessgen::standalone

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

// One place where a name is found: what the host says of it, and the partner text beside it.
struct FoundPlace {
    std::u16string line; // a file's absolute path, or a built-in's description
    std::u16string partner;
};

class NameSearch {
public:
    // Lifetime: both outlive the search.
    NameSearch(const Installation& installation, const FileTree& files);

    // The places of `name` in the order of preference; empty when there are none. For each search folder in order,
    // what exists of these, each with every extension in order:
    //   "f"     -> @f/f.EXT, f.EXT, @Class/f.EXT (classes by their code units), private/f.EXT
    //   "p.q.f" -> +p/+q/@f/f.EXT, +p/+q/f.EXT, +p/@q/f.EXT
    //   "a/b"   -> a/b, a/b.EXT
    //   "/a/b"  -> itself, once for all folders
    // Then, of a name like "f", built-in functions, and after them methods and constructors.
    // Errors: those of the file tree.
    std::vector<FoundPlace> find(std::u16string_view name) const;

private:
    const Installation* installation_;
    const FileTree* files_;
};

// Adds those of `builtins` that have the name, functions before methods and constructors; none of a dotted name.
void addBuiltins(std::u16string_view name, const std::vector<Builtin>& builtins, std::vector<FoundPlace>& places);

} // namespace tessgen::standalone

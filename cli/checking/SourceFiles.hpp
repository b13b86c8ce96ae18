// The files that define names: those that the command line gives, and those below folders.
//
// Threads: one.
#pragma once

#include "cli/installation/ResolverSession.hpp"
#include "standalone/services/SessionState.hpp"

#include <string>
#include <string_view>
#include <vector>

namespace tessgen::cli {

// What could not be checked.
struct Skipped {
    std::string place; // a path, a name or a line; not necessarily UTF-8
    std::string cause;
};

struct SourceFiles {
    std::vector<std::u16string> paths; // absolute, as the search spells them; sorted, each once
    std::vector<std::u16string> roots; // the files and folders that were given, likewise
    std::vector<Skipped> skipped;      // folders that cannot be read, and paths that are not UTF-8; sorted
};

// Whether a file of that name or path is a source file: whether it has an extension that the search tries, or one that
// differs from such only by the case of its letters, or a default one.
bool isSourceFile(std::string_view path, const standalone::Installation& installation);

// The path of a file (absolute, without "." and "..") as the search spells it, when links lead to its folder from one
// of the search path. The file need not be there.
std::string asSearched(const std::string& file, const standalone::SessionState& session);

// The given files, whatever they are called, and the source files below the given folders. Relative paths are meant in
// the working folder. Left out: what is hidden; links to folders, except to search folders and, once on the way to a
// file, to package, class and private folders.
// Errors: std::runtime_error for a path where neither a file nor a folder is, or that is not UTF-8 when it is whole.
SourceFiles sourceFilesBelow(const std::vector<std::string>& paths, const standalone::SessionState& session);

// The source files below the folders of the search path that are the user's own, without KEL folders and folders of
// host code and support packages below them.
SourceFiles ownSourceFiles(const standalone::SessionState& session, const ResolverSession& resolver);

} // namespace tessgen::cli

// What a tree of folders offers to a manifest: which folders the host can search, and the code generator's own files.
//
// Paths are UTF-8 and relative to the tree, "." for the tree itself; lists are in the order of the UTF-16 code units of
// their paths, so that a tree has one survey on every disk.
#pragma once

#include "standalone/files/FileTree.hpp"

#include <string>
#include <vector>

namespace tessgen::standalone {

struct TreeSurvey {
    std::vector<std::string> searchFolders; // those from which a name leads to a source file
    std::vector<std::string> kelFolders;    // those that were given, and those below them that hold source files
    std::vector<std::string> kelFiles;      // the source files below the KEL folders
    std::string nameToTry;                  // one that a file defines; empty when none does
    std::vector<std::string> notUTF8;       // paths passed over, since no manifest can hold them
    std::vector<std::string> unreadable;    // folders and links passed over, each with the cause
};

// Lists every folder of the tree once. A source file has one of the default extensions; it belongs to the folder above
// its package, class and private folders, and a private one alone does not make a folder worth searching. Passed over:
// what is hidden, folders that are links, plain folders within package, class and private ones. KEL folders are
// relative to the tree; one may be hidden, or lie within a package. They are not searched.
// Errors: std::system_error when the tree itself cannot be read.
TreeSurvey surveyTree(const std::string& tree, const std::vector<std::string>& kelFolders, const FileTree& files);

} // namespace tessgen::standalone

// Finds what a manifest for a tree should hold: the folders to search, and the code generator's own files.
//
// Paths are UTF-8 and relative to the tree, "." for the tree itself. Lists are sorted by the UTF-16 code units of their
// paths, so a tree has the same survey on every disk.
#pragma once

#include "standalone/files/FileTree.hpp"
#include "standalone/manifest/Installation.hpp"

#include <string>
#include <vector>

namespace tessgen::standalone {

struct TreeSurvey {
    std::vector<std::string> searchFolders; // folders from which a name leads to a source file
    std::vector<std::string> kelFolders;    // the given ones, and folders below them that hold source files
    std::vector<std::string> kelFiles;      // source files below the KEL folders
    std::string nameToTry;                  // a name that a file defines; empty when there is none
    std::vector<std::string> notUTF8;       // skipped paths, which no manifest can hold
    std::vector<std::string> unreadable;    // skipped folders and links, each with the cause
};

// Lists every folder of the tree once. A source file has one of the extensions and belongs to the folder above
// its package, class and private folders; a folder whose source files are all private is not a search folder. Skipped:
// hidden files and folders, links to folders, plain folders within package, class and private ones. `kelFolders` are
// relative to the tree; they may be hidden or lie within a package, and are not searched.
// Errors: std::system_error when the tree itself cannot be read.
[[nodiscard]] TreeSurvey surveyTree(const std::string& tree, const std::vector<std::string>& kelFolders,
                                    const FileTree& files,
                                    const std::vector<std::string>& extensions = defaultExtensions());

} // namespace tessgen::standalone

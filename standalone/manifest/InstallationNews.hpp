// What a tree holds that its manifest and its records do not know.
#pragma once

#include "standalone/files/FileTree.hpp"
#include "standalone/manifest/Installation.hpp"

#include <functional>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace tessgen::standalone {

// Folders and files as the manifest and a record name them: below the root without it.
struct InstallationNews {
    std::vector<std::string> searchFolders; // that hold source files and are not on the search path
    std::vector<std::string>
        kelFolders; // below KEL folders, that hold source files and are no KEL folders; and given ones
    std::vector<std::string> kelFiles; // without a record
    std::vector<std::string> notUTF8;  // skipped, as in a TreeSurvey
    std::vector<std::string> unreadable;
};

// Surveys `tree`, an absolute path without links. `kelFolders`, relative to the tree, are new KEL folders; the
// manifest's own count in any case. `recorded` has the paths of the records. Left out are support packages: their files
// stand in for others, whose records hold for them; only their KEL files need a record of the file that they stand in
// for. Errors: those of surveyTree.
[[nodiscard]] InstallationNews
newsIn(const std::string& tree, const std::vector<std::string>& kelFolders, const Installation& installation,
       const std::set<std::string>& recorded, const FileTree& files,
       const std::function<std::optional<std::string>(const std::string& path)>& realPath);

} // namespace tessgen::standalone

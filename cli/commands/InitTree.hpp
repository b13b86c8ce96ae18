// What both forms of init share: the folders that the command line names, and what is left out of the tree.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace tessgen::cli {

inline constexpr const char* storeName = "support.cdb";
inline constexpr const char* recordsName = "support.jsonl";

// Whether anything is there, a dangling link included.
bool isThere(const std::string& path);

// The folder without links, as the manifest's folder is resolved when it is read.
// Errors: std::runtime_error: it is no folder, or a manifest there could not name its files.
std::string realFolder(const std::string& folder);

// The folders relative to the tree, in the order given, each once.
// Errors: std::runtime_error: one is not there or does not lie below the tree.
std::vector<std::string> relativeFolders(const std::vector<std::string>& folders, const std::string& tree);

// The same for KEL folders.
// Errors: also one that is a package, class or private folder, which matches no file: a file's package, class and
// private folders are removed before its folder is compared.
std::vector<std::string> relativeKELFolders(const std::vector<std::string>& folders, const std::string& tree);

// Errors: std::runtime_error when the file is a link: what it leads to may belong to something else.
void refuseLink(const std::string& file, std::string_view advice = "remove it, and a new file is written in its place");

// The first record of a KEL file, with every flag set: files of the code generator are usually supported.
std::string recordLine(const std::string& file);

void reportSkipped(const std::vector<std::string>& notUTF8, const std::vector<std::string>& unreadable);

// The exit code of a tree that was read, and the line that says why it is not 0.
int exitCodeFor(const std::vector<std::string>& unreadable);

} // namespace tessgen::cli

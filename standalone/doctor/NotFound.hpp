// Explains why the search does not find a file under a name.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace tessgen::standalone {

class FileTree;
struct Installation;
struct SessionState;

struct NotFound {
    std::vector<std::string> reasons; // every one, as clauses of a sentence; empty when the name leads to the file
    std::u16string name;              // the name under which the file is found once the reasons are gone; empty if none
    std::size_t place = 0;            // and the number of places before it then
};

// Why `name` does not lead to the file at `path` (absolute, UTF-8). Supposes, by the search itself, that the file is
// there, that its folder is the last one of the search path, and that its extension counts; where `name` would not lead
// to it even so, another name does.
// Errors: those of the file tree.
[[nodiscard]] NotFound whyNotFound(const std::string& path, std::u16string_view name, const SessionState& session);

// The files that the search would find as `name` if `folders` were the search path.
// Errors: those of the file tree.
[[nodiscard]] std::vector<std::string> filesIn(const std::vector<std::string>& folders, std::u16string_view name,
                                               const Installation& installation, const FileTree& files);

// Why there is no file at `path`, which does not exist.
[[nodiscard]] std::string absenceOf(const std::string& path);

// Names that may lead to a file, those that a person would use first; the path itself is the last.
[[nodiscard]] std::vector<std::string> usualNames(const std::u16string& path, const Installation& installation);

// Lexical: the name that a file defines; a name without "/" is one already.
[[nodiscard]] std::u16string definedName(const std::u16string& path);

// Lexical: whether the folder above the file's package, class and private folders is on the search path.
[[nodiscard]] bool isSearched(const std::u16string& path, const Installation& installation);

} // namespace tessgen::standalone

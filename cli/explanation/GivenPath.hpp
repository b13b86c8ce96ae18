// Compares a path that the user gave with the paths of candidates.
#pragma once

#include <string>

namespace tessgen::cli {

// `path` without "." and "..", absolute if the working folder is known.
std::u16string absolute(const std::string& path);

// The same in UTF-8.
// Errors: std::runtime_error that names the path: it is not UTF-8.
std::string absoluteInUTF8(const std::string& path);

// The same entry of the same folder, without links on the way to the folder. A file that is a link stays itself.
std::string withoutFolderLinks(const std::string& path);

// Whether a candidate, whose folder need not be readable, is at `place`, which is without folder links.
bool isPlace(const std::string& candidate, const std::string& place);

} // namespace tessgen::cli

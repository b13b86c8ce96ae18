// The manifest as a file: found, opened and read to its end; what it says is not looked at.
#pragma once

#include <string>

namespace tessgen::standalone {

inline constexpr const char* manifestName = "installation.json"; // in the folder that it describes

struct ManifestFile {
    std::string path; // its real path, in UTF-8: links are resolved
    std::string text;
};

// Reads a file, or the `installation.json` of a folder.
// Errors: std::runtime_error with one line: nothing there, not a regular file, unreadable, larger than any manifest, a
// path that is not UTF-8.
ManifestFile readManifestFile(const std::string& fileOrFolder);

} // namespace tessgen::standalone

// Finds and reads the file of the manifest; its content is not interpreted.
#pragma once

#include <string>

namespace tessgen::standalone {

inline constexpr const char* manifestName = "installation.json";

struct ManifestFile {
    std::string path; // in UTF-8, links resolved
    std::string text;
};

// Reads a file, or the `installation.json` of a folder.
// Errors: std::runtime_error with one line: absent, not a regular file, unreadable, larger than 16 MiB, a path that is
// not UTF-8.
[[nodiscard]] ManifestFile readManifestFile(const std::string& fileOrFolder);

} // namespace tessgen::standalone

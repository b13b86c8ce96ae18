// An installation, as its manifest `installation.json` describes it.
//
// Paths are absolute, in UTF-8, without "." and "..": they are made once, when the manifest is read, because they are
// compared as text from then on. Only `kelPath` keeps a "/" at the end.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tessgen::standalone {

// A built-in function, method or constructor of the host.
struct Builtin {
    std::u16string name;
    std::u16string className; // empty for a function
    bool constructor = false;
};

struct Installation {
    std::string manifest; // its path, links resolved
    std::string root;
    std::optional<std::string> supportPackageRoot;
    std::optional<std::string> supportStore;
    std::optional<std::string> searchIndex;           // may not exist yet
    std::vector<std::string> searchPath;              // the host's own search path, in order
    std::vector<std::string> kelPath;                 // folders of the code generator's own files
    std::vector<std::vector<std::string>> sourceCode; // folders of host code, as components below the root
    std::vector<std::string> extensions;              // without the dot, in order of preference
    std::vector<Builtin> builtins;
    std::vector<std::string> given; // the keys in the manifest; all other settings have their default
};

// The folders of host code as paths.
[[nodiscard]] std::vector<std::string> sourceCodePaths(const Installation& installation);

[[nodiscard]] std::vector<std::string> defaultExtensions();

// Reads a manifest, or the `installation.json` of a folder.
// Errors: std::runtime_error that names the file, its line and column, and what was expected there. Texts of the file
// are quoted unescaped.
[[nodiscard]] Installation readInstallation(const std::string& fileOrFolder);

// Errors: std::runtime_error when `folder`, the value of `key`, does not exist.
void requireFolder(const Installation& installation, std::string_view key, const std::string& folder);

} // namespace tessgen::standalone

// An installation, as its manifest `installation.json` describes it.
//
// Paths are absolute UTF-8 texts with "/" as separator, free of "." and "..", made once when the manifest is read,
// since everything later compares them as text. Only `kelPath` keeps a trailing "/" that the manifest gave.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tessgen::standalone {

// A function, method or constructor that the host itself brings.
struct Builtin {
    std::u16string name;
    std::u16string className; // empty for a function
    bool constructor = false;
};

struct Installation {
    std::string manifest; // the manifest's own real path
    std::string root;
    std::optional<std::string> supportPackageRoot;
    std::optional<std::string> supportStore;
    std::optional<std::string> searchIndex;           // need not have been built
    std::vector<std::string> searchPath;              // the host's own search path, in order
    std::vector<std::string> kelPath;                 // folders of the code generator's own files
    std::vector<std::vector<std::string>> sourceCode; // folders of host code, as components below the root
    std::vector<std::string> extensions;              // without the dot, in order of preference
    std::vector<Builtin> builtins;
    std::vector<std::string> given; // the manifest's own keys; every other setting has its default
};

// The folders of host code as paths.
std::vector<std::string> sourceCodePaths(const Installation& installation);

// Of a manifest that gives none.
std::vector<std::string> defaultExtensions();

// Reads a manifest, or the `installation.json` of a folder.
// Errors: std::runtime_error that names the file, the line and column in it, and what was expected there. Texts of the
// file are quoted as they are.
Installation readInstallation(const std::string& fileOrFolder);

// Errors: std::runtime_error when there is no `folder`, which the manifest gives under `key`.
void requireFolder(const Installation& installation, std::string_view key, const std::string& folder);

} // namespace tessgen::standalone

// Finds the installation that a request is about.
#pragma once

#include "cli/options/CommandLine.hpp"
#include "standalone/manifest/Installation.hpp"

#include <string>
#include <string_view>

namespace tessgen::cli {

enum class ManifestSource { option, environment, nearest };

struct FoundManifest {
    std::string path; // of the manifest or of its folder
    ManifestSource source;
};

// The manifest of --installation, else of KELWHICH_INSTALLATION, else the nearest `installation.json` in the working
// folder or above. Does not check that it can be read.
// Errors: std::runtime_error when there is none, or when a folder on the way up cannot be searched, since a manifest
// further up may belong to another installation.
FoundManifest findManifestAndSource(const Request& request);

// The path alone.
std::string findManifest(const Request& request);

// Errors: std::runtime_error when writing to `output` would replace a manifest: the one at `manifest` (a file, a folder
// or empty for none), or any file with a manifest's name, through links too. `key` is the option or key that names
// `output`.
void refuseToReplaceManifest(const std::string& output, const std::string& manifest, std::string_view key = "--output");

// The store that the request names, else the one of the installation.
// Errors: std::runtime_error when the installation has none.
std::string findStore(const Request& request);

// The search index of the installation.
// Errors: std::runtime_error when it has none.
std::string requireSearchIndex(const standalone::Installation& installation);

} // namespace tessgen::cli

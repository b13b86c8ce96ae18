// Finds the installation that a request is about.
#pragma once

#include "cli/options/CommandLine.hpp"
#include "standalone/manifest/Installation.hpp"

#include <string>

namespace tessgen::cli {

enum class ManifestSource { option, environment, nearest };

struct FoundManifest {
    std::string path; // of the manifest or of its folder
    ManifestSource source;
};

// The manifest of --installation, else of KELWHICH_INSTALLATION, else the nearest `installation.json` in the working
// folder or above. Does not check that it can be read. Reports, once, that another user may have put the nearest there.
// Errors: std::runtime_error when there is none, or when a folder on the way up cannot be searched, since a manifest
// further up may belong to another installation.
FoundManifest findManifestAndSource(const Request& request);

// The path alone.
std::string findManifest(const Request& request);

// The path alone, for a command that writes to where the manifest says.
// Errors: those of findManifestAndSource; the user did not name the manifest, and another user may have put it there.
std::string findManifestToWriteBy(const Request& request);

// Errors: std::runtime_error when another user may have put this manifest, which the user did not name, where it is.
void requireTrusted(const std::string& manifest);

// The store that the request names, else the one of the installation.
// Errors: std::runtime_error when the installation has none.
std::string findStore(const Request& request);

// The search index of the installation.
// Errors: std::runtime_error when it has none.
std::string requireSearchIndex(const standalone::Installation& installation);

} // namespace tessgen::cli

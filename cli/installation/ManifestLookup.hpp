// Which installation the program speaks of.
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

// What the request names, else what KELWHICH_INSTALLATION names, else the nearest `installation.json` in the working
// folder or above. Whether the manifest can be read is not looked at.
// Errors: std::runtime_error when there is none, or when a folder on the way up cannot be looked into: the manifest of
// a folder further up may be of another installation.
FoundManifest findManifestAndSource(const Request& request);

// Only the path of that.
std::string findManifest(const Request& request);

// Errors: std::runtime_error when writing to `output` would replace a manifest: the one at `manifest` (or in that
// folder, empty for none), or any other file that goes by the name of manifests, through links too. `key` is what names
// the output.
void keepManifest(const std::string& output, const std::string& manifest, std::string_view key = "--output");

// The store that the request names, else that of the installation.
// Errors: std::runtime_error when the installation has none.
std::string findStore(const Request& request);

// The search index of the installation.
// Errors: std::runtime_error when it has none.
std::string searchIndexOf(const standalone::Installation& installation);

} // namespace tessgen::cli

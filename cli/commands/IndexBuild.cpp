#include "cli/commands/Commands.hpp"
#include "cli/installation/ManifestLookup.hpp"
#include "cli/output/Console.hpp"
#include "cli/output/Escape.hpp"
#include "standalone/index/SearchIndexBuilder.hpp"
#include "standalone/manifest/Installation.hpp"

#include <fmt/format.h>

#include <string>

namespace tessgen::cli {

int indexBuild(const Request& request) {
    const auto installation = standalone::readInstallation(findManifestToWriteBy(request));
    const auto file = requireSearchIndex(installation);
    standalone::requireFolder(installation, "root", installation.root);
    const auto built = standalone::buildSearchIndex(installation, file);
    std::string text = fmt::format("{}: {}\n", escaped(file), counted(built.folders, "folder"));
    for (const auto& folder : built.leftOut) {
        text += fmt::format("  left out: {}\n", escaped(folder));
    }
    writeOut(text);
    return exitYes;
}

} // namespace tessgen::cli

#include "cli/Commands.hpp"
#include "cli/Console.hpp"
#include "cli/Escape.hpp"
#include "cli/Manifest.hpp"
#include "standalone/Installation.hpp"
#include "standalone/SearchIndexBuilder.hpp"

#include <fmt/format.h>

#include <filesystem>
#include <stdexcept>
#include <string>
#include <system_error>

namespace tessgen::cli {

int indexBuild(const Request& request) {
    const auto installation = standalone::readInstallation(findManifest(request));
    const auto file = searchIndexOf(installation);
    keepManifest(file, installation.manifest, "searchIndex");
    std::error_code absent;
    if (installation.supportStore && std::filesystem::equivalent(file, *installation.supportStore, absent)) {
        throw std::runtime_error(fmt::format("{}: is the support store; name another file with searchIndex", file));
    }
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

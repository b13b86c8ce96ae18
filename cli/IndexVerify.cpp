#include "cli/Commands.hpp"
#include "cli/Console.hpp"
#include "cli/Escape.hpp"
#include "cli/Manifest.hpp"
#include "cli/Verified.hpp"
#include "standalone/Installation.hpp"
#include "standalone/SearchIndexCheck.hpp"
#include "standalone/SearchIndexFormat.hpp"

#include <fmt/format.h>

#include <string>

namespace tessgen::cli {

int indexVerify(const Request& request) {
    const auto installation = standalone::readInstallation(findManifest(request));
    const auto file = searchIndexOf(installation);
    const int isWhole = tellVerified(file, standalone::checkSearchIndex(file), standalone::searchIndexKind, "folder");
    if (isWhole != exitYes) {
        return isWhole;
    }
    const auto use = standalone::useOf(standalone::SearchIndex(file), installation);
    if (use.changed.empty()) {
        return exitYes;
    }
    std::string text;
    for (const auto& folder : use.changed) {
        text += fmt::format("  changed or new: {}\n", escaped(folder));
    }
    writeOut(text);
    complain(fmt::format("{}: {} of {} must be listed for each question; build it anew with: {}", file,
                         use.changed.size(), counted(use.folders, "folder"), standalone::searchIndexKind.command));
    return exitNo;
}

} // namespace tessgen::cli

#include "cli/commands/Commands.hpp"
#include "cli/installation/ManifestLookup.hpp"
#include "cli/output/Console.hpp"
#include "cli/output/Escape.hpp"
#include "cli/output/Progress.hpp"
#include "standalone/manifest/Installation.hpp"
#include "standalone/store/SupportStoreBuilder.hpp"

#include <fmt/format.h>

#include <optional>
#include <stdexcept>
#include <string>

namespace tessgen::cli {

namespace {

standalone::StoreBuildProgress buildShowingProgress(const std::string& records, const std::string& output,
                                                    const std::string& root) {
    std::optional<Progress> progress;
    return standalone::buildSupportStore(records, output, root, [&progress](const auto& done) {
        if (!progress) {
            progress.emplace("records", done.size);
        }
        progress->show(done.records, done.bytes);
    });
}

} // namespace

int storeBuild(const Request& request) {
    const auto installation =
        standalone::readInstallation(request.output ? findManifest(request) : findManifestToWriteBy(request));
    const auto& output = request.output ? request.output : installation.supportStore;
    if (!output) {
        throw std::runtime_error(fmt::format("{}: has no key supportStore; add \"supportStore\": \"support.cdb\", or "
                                             "name the file to write with --output",
                                             installation.manifest));
    }
    standalone::requireFolder(installation, "root", installation.root);
    const auto built = buildShowingProgress(request.operands.front(), *output, installation.root);
    writeOut(fmt::format("{}: {}\n", escaped(*output), counted(built.records, "record")));
    return exitYes;
}

} // namespace tessgen::cli

#include "cli/Commands.hpp"
#include "cli/Console.hpp"
#include "cli/Escape.hpp"
#include "cli/Manifest.hpp"
#include "standalone/Installation.hpp"
#include "standalone/SupportStoreBuilder.hpp"

#include <fmt/format.h>

#include <stdexcept>

namespace tessgen::cli {

int storeBuild(const Request& request) {
    const auto installation = standalone::readInstallation(findManifest(request));
    const auto& output = request.output ? request.output : installation.supportStore;
    if (!output) {
        throw std::runtime_error(fmt::format(
            "{} names no supportStore; give it one, or say where to write with --output", installation.manifest));
    }
    const auto built = standalone::buildSupportStore(request.operands.front(), *output, installation.root);
    writeOut(fmt::format("{}: {} records\n", escaped(*output), built.records));
    return exitYes;
}

} // namespace tessgen::cli

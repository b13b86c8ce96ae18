#include "cli/Commands.hpp"
#include "cli/Console.hpp"
#include "cli/Escape.hpp"
#include "cli/Manifest.hpp"
#include "standalone/Installation.hpp"
#include "standalone/SupportStore.hpp"
#include "standalone/SupportStoreCheck.hpp"

#include <fmt/format.h>

#include <string>

namespace tessgen::cli {

int storeVerify(const Request& request) {
    const auto file = findStore(request);
    if (request.operands.empty()) { // then it must be the one of the installation
        const standalone::SupportStore store(file, standalone::readInstallation(findManifest(request)).root);
    }
    const auto check = standalone::checkSupportStore(file);
    if (check.damages == 0) {
        writeOut(fmt::format("{}: whole, {}\n", escaped(file), counted(check.records, "record")));
        return exitYes;
    }
    std::string text;
    for (const auto& finding : check.findings) {
        text += fmt::format("{}: {}\n", escaped(file), finding);
    }
    writeOut(text);
    complain(fmt::format("{}: damaged in {}; build it anew with: kelwhich store build RECORDS.jsonl", file,
                         counted(check.damages, "place")));
    return exitNothing;
}

} // namespace tessgen::cli

// `store verify` and `index verify`.
#include "cli/commands/Commands.hpp"
#include "cli/installation/ManifestLookup.hpp"
#include "cli/output/Console.hpp"
#include "cli/output/Escape.hpp"
#include "standalone/database/DatabaseCheck.hpp"
#include "standalone/index/SearchIndexCheck.hpp"
#include "standalone/index/SearchIndexFormat.hpp"
#include "standalone/manifest/Installation.hpp"
#include "standalone/store/SupportStore.hpp"
#include "standalone/store/SupportStoreCheck.hpp"
#include "standalone/store/SupportStoreFormat.hpp"

#include <fmt/format.h>

#include <string>
#include <string_view>

namespace tessgen::cli {

namespace {

// Prints the number of records of an intact file (exitYes), or its damages and what to do (exitFailed). `record` is the
// word for one record.
int printVerification(const std::string& file, const standalone::DatabaseCheck& check,
                      const standalone::DatabaseKind& kind, std::string_view record) {
    if (check.damages == 0) {
        writeOut(fmt::format("{}: intact, {}\n", escaped(file), counted(check.records, record)));
        return exitYes;
    }
    std::string text;
    for (const auto& finding : check.findings) {
        text += fmt::format("{}: {}\n", escaped(file), finding);
    }
    writeOut(text);
    reportError(
        fmt::format("{}: damaged in {}; rebuild it with: {}", file, counted(check.damages, "place"), kind.command));
    return exitFailed;
}

} // namespace

int storeVerify(const Request& request) {
    const auto file = findStore(request);
    if (request.operands.empty()) { // the installation's store must be of its root
        const standalone::SupportStore store(file, standalone::readInstallation(findManifest(request)).root);
    }
    return printVerification(file, standalone::checkSupportStore(file), standalone::supportStoreKind, "record");
}

int indexVerify(const Request& request) {
    const auto installation = standalone::readInstallation(findManifest(request));
    const auto file = requireSearchIndex(installation);
    const int exitCode =
        printVerification(file, standalone::checkSearchIndex(file), standalone::searchIndexKind, "folder");
    if (exitCode != exitYes) {
        return exitCode;
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
    reportError(fmt::format("{}: {} of {} changed and are listed again for each name; rebuild it with: {}", file,
                            use.changed.size(), counted(use.folders, "folder"), standalone::searchIndexKind.command));
    return exitNo;
}

} // namespace tessgen::cli

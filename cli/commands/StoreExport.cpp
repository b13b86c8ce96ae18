#include "cli/commands/Commands.hpp"
#include "cli/installation/ManifestLookup.hpp"
#include "cli/output/Console.hpp"
#include "cli/output/Escape.hpp"
#include "standalone/database/DatabaseFile.hpp"
#include "standalone/files/AtomicFile.hpp"
#include "standalone/store/SupportRecords.hpp"
#include "standalone/store/SupportStore.hpp"
#include "standalone/text/Text.hpp"

#include <fmt/format.h>

#include <cstddef>
#include <filesystem>
#include <stdexcept>
#include <string>
#include <system_error>

namespace tessgen::cli {

namespace {

// Of a damaged store, writes the records before the damage, then throws DatabaseDamage.
template <typename Write>
void exportRecords(const standalone::SupportStore& store, const Write& write) {
    const auto root = standalone::toUTF8(store.root()).value();
    constexpr std::size_t blockSize = std::size_t{1} << 16U; // bytes per system call
    std::string lines;
    try {
        store.forEachRecord([&](const standalone::SupportRecord& record) {
            lines.append(escapedJSON(standalone::writeSupportRecord(record, root))).append(1, '\n');
            if (lines.size() >= blockSize) {
                write(lines);
                lines.clear();
            }
        });
    } catch (const standalone::DatabaseDamage&) {
        write(lines);
        throw;
    }
    write(lines);
}

} // namespace

int storeExport(const Request& request) {
    const auto file = findStore(request);
    const standalone::SupportStore store(file);
    if (!request.output) {
        exportRecords(store, writeOut);
        return exitYes;
    }
    if (std::error_code absent; std::filesystem::equivalent(file, *request.output, absent)) {
        throw std::runtime_error(
            fmt::format("{}: is the store itself; name another file with --output", *request.output));
    }
    refuseToReplaceManifest(*request.output,
                            request.operands.empty() ? findManifest(request) : request.installation.value_or(""));
    standalone::AtomicFile output(*request.output);
    exportRecords(store, [&output](const std::string& lines) { output.append(lines); });
    output.commit();
    return exitYes;
}

} // namespace tessgen::cli

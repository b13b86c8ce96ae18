#include "cli/commands/Commands.hpp"
#include "cli/installation/ManifestLookup.hpp"
#include "cli/output/Console.hpp"
#include "cli/output/Escape.hpp"
#include "standalone/database/DatabaseFile.hpp"
#include "standalone/files/AtomicFile.hpp"
#include "standalone/files/LineReader.hpp"
#include "standalone/store/SupportRecords.hpp"
#include "standalone/store/SupportStore.hpp"
#include "standalone/text/Text.hpp"

#include <cstddef>
#include <stdexcept>
#include <string>
#include <string_view>

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
            const auto line = escapedJSON(standalone::writeSupportRecord(record, root));
            if (line.size() > standalone::LineReader::longestLine) {
                throw std::runtime_error("a record makes a line of more than 1 MiB, which no build reads");
            }
            lines.append(line).append(1, '\n');
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

// Records: the first line that is not blank is one.
bool holdsRecords(const std::string& file) {
    try {
        standalone::LineReader lines(file);
        auto line = lines.next();
        while (line && line->find_first_not_of(" \t") == std::string_view::npos) {
            line = lines.next();
        }
        static_cast<void>(standalone::readSupportRecord(line.value_or(""), "/"));
        return true;
    } catch (const std::runtime_error&) {
        return false;
    }
}

constexpr standalone::Replaceable replaceableRecords{"a file of support records", "--output", holdsRecords};

} // namespace

int storeExport(const Request& request) {
    const auto file = findStore(request);
    const standalone::SupportStore store(file);
    if (!request.output) {
        exportRecords(store, writeOut);
        return exitYes;
    }
    standalone::AtomicFile output(*request.output, replaceableRecords);
    exportRecords(store, [&output](const std::string& lines) { output.append(lines); });
    output.commit();
    return exitYes;
}

} // namespace tessgen::cli

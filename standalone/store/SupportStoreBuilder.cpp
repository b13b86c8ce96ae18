#include "standalone/store/SupportStoreBuilder.hpp"

#include "standalone/database/DatabaseFile.hpp"
#include "standalone/database/DatabaseWriter.hpp"
#include "standalone/files/AtomicFile.hpp"
#include "standalone/files/FileKind.hpp"
#include "standalone/files/LineReader.hpp"
#include "standalone/json/JsonInput.hpp"
#include "standalone/store/SupportRecords.hpp"
#include "standalone/store/SupportStoreFormat.hpp"
#include "standalone/text/Text.hpp"

#include <boost/unordered/unordered_flat_map.hpp>
#include <cstddef>
#include <functional>
#include <optional>
#include <stdexcept>
#include <string_view>

namespace tessgen::standalone {

namespace {

// The files that have a record. Keeps hashes of their paths, since all paths may not fit into memory.
class KnownFiles {
public:
    // The line of an earlier record of the same file. If there is none, remembers this line.
    std::optional<std::uint64_t> lineOf(const std::u16string& path, std::uint64_t line, DatabaseWriter& written) {
        const auto [known, isNew] = lines_.try_emplace(std::hash<std::u16string>()(path), line);
        if (isNew || !written.holds(encodeKey(EntryKind::file, path))) {
            return std::nullopt;
        }
        return known->second;
    }

private:
    boost::unordered_flat_map<std::size_t, std::uint64_t> lines_;
};

void add(const SupportRecord& record, DatabaseWriter& writer) {
    const auto kind = record.entry.isBuiltin ? EntryKind::builtin : EntryKind::file;
    const auto reference = writer.add(encodeKey(kind, record.entry.path), encodeRecord(record));
    for (const auto& name : record.names) {
        writer.add(encodeKey(EntryKind::name, name), encodeReference(reference));
    }
}

constexpr Replaceable replaceableStore{"a support store", "--output",
                                       [](const std::string& file) { return isDatabase(file, supportStoreKind); }};

SupportRecord recordIn(std::string_view line, const LineReader& lines, const std::string& file,
                       const std::string& root) {
    try {
        return readLine(lines.place(), [&] { return readSupportRecord(line, root); });
    } catch (const std::runtime_error& error) {
        throw std::runtime_error(error.what() + noteOnKind(file, "support records"));
    }
}

bool isBlank(std::string_view line) {
    return line.find_first_not_of(" \t") == std::string_view::npos;
}

} // namespace

StoreBuildProgress buildSupportStore(const std::string& records, const std::string& output, const std::string& root,
                                     const std::function<void(const StoreBuildProgress&)>& report) {
    auto lines = LineReader::ofInput(records);
    AtomicFile file(output, replaceableStore);
    DatabaseWriter writer(file);
    KnownFiles known;
    CommonPrefix prefix;
    StoreBuildProgress progress;
    progress.size = lines.size();
    while (const auto line = lines.next()) {
        progress.bytes = lines.bytes();
        if (report) {
            report(progress);
        }
        if (isBlank(*line)) {
            continue;
        }
        const auto record = recordIn(*line, lines, records, root);
        if (!record.entry.isBuiltin) {
            if (const auto earlier = known.lineOf(record.entry.path, lines.number(), writer)) {
                throw std::runtime_error(lines.place() + " key \"path\": this file has a record already, on line "
                                         + std::to_string(*earlier));
            }
            prefix.add(record.entry.path);
        }
        add(record, writer);
        ++progress.records;
    }
    writer.finish(supportStoreKind, static_cast<std::uint32_t>(progress.records), toUTF16(root).value(), prefix.text());
    file.commit();
    return progress;
}

} // namespace tessgen::standalone

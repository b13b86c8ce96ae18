#include "standalone/database/DatabaseWriter.hpp"

#include <algorithm>
#include <cstddef>

namespace tessgen::standalone {

DatabaseWriter::DatabaseWriter(AtomicFile& file, std::uint64_t sizeLimit) : file_(&file), sizeLimit_(sizeLimit) {
    file.append(std::string(databaseHeaderSize, '\0')); // pointers, written when the tables are known
}

EntryReference DatabaseWriter::add(const std::string& key, std::string value) {
    const auto checksum = checksumOf(key + value);
    value += encodeNumber(checksum);
    const std::uint64_t length = key.size() + value.size();
    const std::uint64_t size = size_ + databaseEntryHeaderSize + length + databaseTableSizePerEntry;
    if (size > sizeLimit_) {
        file_->fail("it would be larger than " + std::to_string(sizeLimit_)
                    + " bytes, the most that its format holds; build it from less");
    }
    const EntryReference reference{static_cast<std::uint32_t>(position_), static_cast<std::uint32_t>(length), checksum};
    file_->append(encodeNumber(static_cast<std::uint32_t>(key.size()))
                  + encodeNumber(static_cast<std::uint32_t>(value.size())) + key + value);
    tables_.add(key, reference.position);
    size_ = size;
    position_ += databaseEntryHeaderSize + length;
    return reference;
}

bool DatabaseWriter::holds(const std::string& key) {
    const auto positions = tables_.positionsFor(key);
    return std::any_of(positions.begin(), positions.end(), [&](std::uint32_t position) {
        const auto length = numberFrom(file_->read(position, sizeof(std::uint32_t)));
        return length == key.size() && file_->read(position + databaseEntryHeaderSize, length) == key;
    });
}

void DatabaseWriter::finish(const DatabaseKind& kind, std::uint32_t records, const std::u16string& root,
                            const std::optional<std::u16string>& commonPrefix) {
    add(std::string(databaseInfoKey),
        encodeInfo({std::u16string(kind.magic), kind.version, records, root, commonPrefix}));
    for (std::size_t index = 0; index < DatabaseTables::count; ++index) {
        file_->append(tables_.table(index));
    }
    file_->overwrite(0, tables_.pointers(static_cast<std::uint32_t>(position_)));
}

} // namespace tessgen::standalone

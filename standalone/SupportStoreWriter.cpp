#include "standalone/SupportStoreWriter.hpp"

#include <cerrno>
#include <utility>

namespace tessgen::standalone {

SupportStoreWriter::SupportStoreWriter(const NewFile& file, std::uint64_t sizeLimit)
    : file_(&file), sizeLimit_(sizeLimit) {
    if (cdb_make_start(&make_, file.descriptor()) != 0) {
        file.fail(errno);
    }
}

SupportStoreWriter::~SupportStoreWriter() {
    if (open_) {
        cdb_make_finish(&make_); // the only way to free what it holds; the file is given up
    }
}

void SupportStoreWriter::add(const SupportRecord& record) {
    const auto kind = record.entry.isBuiltin ? EntryKind::builtin : EntryKind::file;
    const auto reference = addEntry(encodeKey(kind, record.entry.path), encodeRecord(record));
    for (const auto& name : record.names) {
        addEntry(encodeKey(EntryKind::name, name), encodeReference(reference));
    }
    ++records_;
}

bool SupportStoreWriter::hasFile(std::u16string_view path) {
    const auto key = encodeKey(EntryKind::file, path);
    const int found = cdb_make_exists(&make_, key.data(), static_cast<unsigned>(key.size()));
    if (found < 0) {
        file_->fail(errno);
    }
    return found > 0;
}

std::uint32_t SupportStoreWriter::finish(const std::u16string& root) {
    StoreInfo info;
    info.records = records_;
    info.root = root;
    addEntry(encodeKey(EntryKind::info), encodeInfo(info));
    open_ = false;
    if (cdb_make_finish(&make_) != 0) {
        file_->fail(errno);
    }
    return records_;
}

EntryReference SupportStoreWriter::addEntry(const std::string& key, std::string value) {
    const auto checksum = checksumOf(key + value);
    value += encodeNumber(checksum);
    const std::uint64_t length = key.size() + value.size();
    const std::uint64_t size = size_ + databaseEntryHeaderSize + length + databaseTableSizePerEntry;
    if (size > sizeLimit_) {
        file_->fail("it would be larger than " + std::to_string(sizeLimit_)
                    + " bytes, the most that its format holds; build it from fewer records");
    }
    const EntryReference reference{static_cast<std::uint32_t>(position_), static_cast<std::uint32_t>(length), checksum};
    if (cdb_make_add(&make_, key.data(), static_cast<unsigned>(key.size()), value.data(),
                     static_cast<unsigned>(value.size()))
        != 0) {
        file_->fail(errno);
    }
    size_ = size;
    position_ += databaseEntryHeaderSize + length;
    return reference;
}

} // namespace tessgen::standalone

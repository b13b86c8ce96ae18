#include "standalone/store/SupportStore.hpp"

#include "host/Paths.hpp"
#include "standalone/database/DatabaseFile.hpp"
#include "standalone/store/SupportStoreFormat.hpp"
#include "standalone/text/Text.hpp"

#include <utility>

namespace tessgen::standalone {

namespace {

// The key of a look-up, in memory that the thread keeps; valid until its next call.
const std::string& keyOf(EntryKind kind, std::u16string_view text) {
    thread_local std::string key;
    encodeKey(key, kind, text);
    return key;
}

SupportRecord decode(const DatabaseFile& file, const DatabaseEntry& entry) {
    auto record = decodeRecord(entry.key, entry.value);
    if (!record) {
        file.failDamaged("a record is not in the store's format");
    }
    return std::move(*record);
}

SupportStore::Record recordOf(const DatabaseFile& file, const DatabaseEntry& entry) {
    return std::make_shared<const tessapp::internal::screener::meta::SupportEntry>(decode(file, entry).entry);
}

} // namespace

SupportStore::SupportStore(const std::string& file)
    : file_(std::make_unique<const DatabaseFile>(file, supportStoreKind)) {}

SupportStore::SupportStore(const std::string& file, std::string_view root) : SupportStore(file) {
    const auto& builtFor = file_->info().root;
    if (toUTF16(root) != builtFor) {
        file_->fail("was built for the root \"" + toUTF8(builtFor).value() + "\", not for \"" + std::string(root)
                    + "\"");
    }
}

SupportStore::SupportStore(SupportStore&&) noexcept = default;
SupportStore& SupportStore::operator=(SupportStore&&) noexcept = default;
SupportStore::~SupportStore() = default;

const std::u16string& SupportStore::root() const {
    return file_->info().root;
}

std::optional<SupportStore::Record> SupportStore::findByPath(std::u16string_view path) const {
    if (!kelwhich::beginsWith(path, *file_->info().commonPrefix)) {
        return std::nullopt;
    }
    const auto entry = DatabaseSearch(*file_, keyOf(EntryKind::file, path)).next();
    return entry ? std::optional(recordOf(*file_, *entry)) : std::nullopt;
}

std::vector<SupportStore::Record> SupportStore::findBySymbol(std::u16string_view symbol) const {
    std::vector<Record> records;
    std::uint32_t last = 0; // no entry begins there
    DatabaseSearch search(*file_, keyOf(EntryKind::name, symbol));
    while (const auto entry = search.next()) {
        const auto reference = decodeReference(entry->value);
        if (!reference || reference->position <= last) {
            file_->failDamaged("the records of a name are not in their order");
        }
        last = reference->position;
        records.push_back(recordOf(*file_, file_->entryAt(*reference)));
    }
    return records;
}

void SupportStore::forEachRecord(const std::function<void(const SupportRecord&)>& visit) const {
    DatabaseWalk walk(*file_);
    std::uint64_t records = 0;
    while (const auto entry = walk.next()) {
        if (isRecord(entry->key)) {
            ++records;
            visit(decode(*file_, *entry));
        }
    }
    if (records != file_->info().records) {
        file_->failDamaged("it holds " + std::to_string(records) + " records where "
                           + std::to_string(file_->info().records) + " were written");
    }
}

} // namespace tessgen::standalone

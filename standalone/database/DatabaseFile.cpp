#include "standalone/database/DatabaseFile.hpp"

#include "standalone/files/Descriptor.hpp"
#include "standalone/files/FileErrors.hpp"
#include "standalone/files/FileKind.hpp"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <stdexcept>
#include <sys/mman.h>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>
#include <utility>

namespace tessgen::standalone {

namespace {

constexpr std::uint32_t pointerCount = databaseHeaderSize / databasePointerSize;

// The system's message and what to do.
std::string whyNotRead(int error) {
    return std::generic_category().message(error).append(adviceOn(error));
}

// The size of the file whose first bytes are these pointers: the hash tables fill it from the last entry to its end.
// Nothing when the pointers contradict each other.
std::optional<std::uint64_t> sizeByPointers(std::string_view pointers) {
    std::uint64_t tablesEnd = numberFrom(pointers);
    bool consistent = tablesEnd >= databaseHeaderSize;
    for (std::size_t pointer = 0; pointer < databaseHeaderSize; pointer += databasePointerSize) {
        consistent = consistent && numberFrom(pointers.substr(pointer)) == tablesEnd;
        tablesEnd += std::uint64_t{numberFrom(pointers.substr(pointer + databasePointerSize / 2))} * databaseSlotSize;
    }
    return consistent && tablesEnd <= databaseSizeLimit ? std::optional(tablesEnd) : std::nullopt;
}

// As many of these bytes as the file has.
std::string bytesOf(const Descriptor& file, std::uint32_t position, std::size_t length) {
    std::string bytes(length, '\0');
    const auto size = pread(file.get(), bytes.data(), length, position);
    bytes.resize(size < 0 ? 0 : static_cast<std::size_t>(size));
    return bytes;
}

} // namespace

bool isDatabase(const std::string& file, const DatabaseKind& kind) {
    const Descriptor descriptor(open(file.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC));
    const auto pointers = bytesOf(descriptor, 0, databaseHeaderSize);
    if (pointers.size() != databaseHeaderSize || !sizeByPointers(pointers)) {
        return false;
    }
    constexpr std::uint32_t longestInfo = 1U << 16U; // the last entry, with two paths at most
    const auto end = numberFrom(pointers);
    const auto begin = end - std::min(end, longestInfo);
    std::string magic;
    appendUnits(magic, kind.magic);
    return bytesOf(descriptor, begin, end - begin).find(magic) != std::string::npos;
}

DatabaseFile::DatabaseFile(std::string file, const DatabaseKind& kind) : file_(std::move(file)), kind_(&kind) {
    map();
    readInfo();
}

DatabaseFile::Mapping::~Mapping() {
    if (begin != nullptr) {
        munmap(const_cast<char*>(begin), size);
    }
}

void DatabaseFile::map() {
    // Without O_NONBLOCK, opening a FIFO would wait for a writer.
    const Descriptor descriptor(open(file_.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC));
    if (!descriptor.isOpen()) {
        if (errno != ENOENT) {
            refuse("cannot be opened: " + whyNotRead(errno));
        }
        fail("there is no such " + std::string(kind_->name));
    }
    struct stat status {};
    if (fstat(descriptor.get(), &status) != 0) {
        refuse("cannot be read: " + whyNotRead(errno));
    }
    if (!S_ISREG(status.st_mode)) {
        refuse("is not a regular file; name another file");
    }
    if (status.st_size < databaseHeaderSize) {
        failKind(", or is cut short");
    }
    const auto size = static_cast<std::size_t>(status.st_size);
    void* const begin = mmap(nullptr, size, PROT_READ, MAP_SHARED, descriptor.get(), 0);
    if (begin == MAP_FAILED) {
        refuse("cannot be read: " + whyNotRead(errno));
    }
    mapping_.begin = static_cast<const char*>(begin);
    mapping_.size = size;
    checkPointers();
}

void DatabaseFile::checkPointers() const {
    const auto size = sizeByPointers(bytes(0, databaseHeaderSize));
    if (!size) {
        failKind(", or is damaged");
    }
    if (*size != mapping_.size) {
        fail("is cut short or has grown: it holds " + std::to_string(mapping_.size) + " bytes where "
             + std::to_string(*size) + " were written");
    }
}

void DatabaseFile::readInfo() {
    const auto entry = DatabaseSearch(*this, databaseInfoKey).next();
    const auto info = entry ? decodeInfo(*kind_, entry->value) : std::nullopt;
    if (!info) {
        failKind("");
    }
    if (info->version != kind_->version) {
        fail("has the format of another version of this program");
    }
    info_ = *info;
}

void DatabaseFile::release(std::uint32_t begin, std::uint32_t end) const {
    constexpr std::uint32_t block = 1U << 16U; // a multiple of the page size
    begin -= begin % block;
    end -= end % block;
    // madvise asks for the cast; it does not change the bytes.
    madvise(const_cast<char*>(bytes(begin, end - begin).data()), end - begin, MADV_DONTNEED);
}

DatabaseEntry DatabaseFile::entryIn(std::string_view bytes, std::uint32_t keyLength) const {
    if (bytes.size() < std::size_t{keyLength} + checksumSize) {
        failDamaged("an entry is too short");
    }
    const auto content = bytes.substr(0, bytes.size() - checksumSize);
    return {content.substr(0, keyLength), content.substr(keyLength)};
}

void DatabaseFile::check(const DatabaseEntry& entry) const {
    if (checksumOf({entry.key.data(), entry.key.size() + entry.value.size()}) != entry.checksum()) {
        failDamaged("the checksum of an entry is wrong");
    }
}

DatabaseEntry DatabaseFile::checkedEntry(std::string_view bytes, std::uint32_t keyLength) const {
    const auto entry = entryIn(bytes, keyLength);
    check(entry);
    return entry;
}

DatabaseEntry DatabaseFile::entryAt(const EntryReference& reference) const {
    const auto header = bytes(reference.position, databaseEntryHeaderSize);
    const auto keyLength = numberFrom(header);
    const auto valueLength = numberFrom(header.substr(databaseEntryHeaderSize / 2));
    if (std::uint64_t{keyLength} + valueLength != reference.length) {
        failDamaged("an entry is not as long as it was");
    }
    const auto entry = checkedEntry(bytes(reference.position + databaseEntryHeaderSize, reference.length), keyLength);
    if (entry.checksum() != reference.checksum) {
        failDamaged("an entry is not the one that was written there");
    }
    return entry;
}

std::string DatabaseFile::advice() const {
    return "; build it anew with: " + std::string(kind_->command);
}

void DatabaseFile::refuse(const std::string& what) const {
    throw std::runtime_error(file_ + ": " + what);
}

void DatabaseFile::fail(const std::string& what) const {
    refuse(what + advice());
}

void DatabaseFile::failKind(const char* orElse) const {
    const auto expected = "a " + std::string(kind_->name);
    if (const auto kind = kindOfFile(file_); !kind.empty() && kind != expected) {
        refuse("holds " + kind + ", not " + expected + "; name another file");
    }
    fail("is not " + expected + orElse);
}

void DatabaseFile::failOutside() const {
    failDamaged("an entry would lie outside the file");
}

void DatabaseFile::failDamaged(const std::string& damage) const {
    throw DatabaseDamage(file_ + ": is damaged: " + damage + advice(), damage);
}

DatabaseSearch::DatabaseSearch(const DatabaseFile& file, std::string_view key) : file_(&file), key_(key) {
    if (key_.size() > databaseSizeLimit) {
        return; // no entry has such a key
    }
    hash_ = databaseHashOf(key_);
    const auto pointer = file.bytes(hash_ % pointerCount * databasePointerSize, databasePointerSize);
    unseen_ = numberFrom(pointer.substr(databasePointerSize / 2));
    if (unseen_ > 0) {
        table_ = file.bytes(numberFrom(pointer), unseen_ * databaseSlotSize);
        next_ = std::size_t{hash_ / pointerCount % unseen_} * databaseSlotSize;
    }
}

std::optional<DatabaseEntry> DatabaseSearch::next() {
    const auto entry = nextUnchecked();
    if (entry) {
        file_->check(*entry);
    }
    return entry;
}

std::optional<DatabaseEntry> DatabaseSearch::nextUnchecked() {
    for (; unseen_ > 0; --unseen_) {
        // Hot: a dozen probes a key; bounds were checked when `table_` was sliced.
        std::array<std::uint32_t, 2> slot{};
        std::memcpy(slot.data(), &table_[next_], sizeof slot);
        next_ = next_ + databaseSlotSize == table_.size() ? 0 : next_ + databaseSlotSize;
        const auto [hash, position] = slot;
        if (position == 0 && hash == 0) { // an empty slot ends the search
            unseen_ = 0;
            break;
        }
        if (position == 0 || hash % pointerCount != hash_ % pointerCount) {
            file_->failDamaged("a hash table holds what does not belong in it");
        }
        if (hash != hash_) {
            continue;
        }
        const auto header = file_->bytes(position, databaseEntryHeaderSize);
        const auto length = std::uint64_t{numberFrom(header)} + numberFrom(header.substr(databaseEntryHeaderSize / 2));
        if (length > databaseSizeLimit) {
            file_->failOutside();
        }
        const auto entry = file_->bytes(position + databaseEntryHeaderSize, static_cast<std::uint32_t>(length));
        if (numberFrom(header) == key_.size() && entry.starts_with(key_)) {
            --unseen_;
            return file_->entryIn(entry, numberFrom(header));
        }
        // Another key with the same hash, or a damaged entry or slot that would hide the one with this key.
        if (databaseHashOf(file_->checkedEntry(entry, numberFrom(header)).key) != hash_) {
            file_->failDamaged("a hash table leads to another entry");
        }
    }
    return std::nullopt;
}

std::optional<DatabaseEntry> DatabaseWalk::next() {
    const auto end = file_->entriesEnd();
    if (following_ == end) {
        return std::nullopt;
    }
    constexpr std::uint32_t most = 1U << 24U;
    if (following_ - released_ > most) {
        file_->release(released_, following_);
        released_ = following_;
    }
    position_ = std::exchange(following_, end);
    const auto header = file_->bytes(position_, databaseEntryHeaderSize);
    const auto keyLength = numberFrom(header);
    const auto length = std::uint64_t{keyLength} + numberFrom(header.substr(databaseEntryHeaderSize / 2));
    if (position_ + databaseEntryHeaderSize + length > end) {
        file_->failDamaged("an entry does not end where the next one begins");
    }
    following_ = static_cast<std::uint32_t>(position_ + databaseEntryHeaderSize + length);
    const auto bytes = file_->bytes(position_ + databaseEntryHeaderSize, static_cast<std::uint32_t>(length));
    return file_->checkedEntry(bytes, keyLength);
}

} // namespace tessgen::standalone

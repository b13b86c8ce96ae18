// A read-only mapped constant database whose entries carry a CRC-32; every accessor verifies it except `...Unchecked`.
//
// The file may be replaced, as builds do, but never be written in place: that may end a program that has it mapped
// (SIGBUS).
// Threads: any, at the same time.
// Lifetime: entries are views into the file's memory.
// Errors: std::runtime_error, one line that names the file and says what to do.
#pragma once

#include "standalone/database/DatabaseFormat.hpp"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>

namespace tessgen::standalone {

// Damage inside a file that could be opened.
class DatabaseDamage : public std::runtime_error {
public:
    DatabaseDamage(const std::string& what, std::string problem)
        : std::runtime_error(what), damage(std::move(problem)) {}

    std::string damage; // without the file and the advice
};

// Whether the file is a database of that kind, of any version: the pointers agree with each other, and the magic text
// is where it belongs. Damage elsewhere does not matter.
[[nodiscard]] bool isDatabase(const std::string& file, const DatabaseKind& kind);

struct DatabaseEntry {
    std::string_view key;   // right before `value` in the file
    std::string_view value; // right before its checksum

    [[nodiscard]] std::uint32_t checksum() const { return numberFrom({value.data() + value.size(), checksumSize}); }
};

class DatabaseFile {
public:
    // Lifetime: `kind` outlives the object.
    // Errors: no such file, not a regular file, another kind or version, truncated.
    DatabaseFile(std::string file, const DatabaseKind& kind);
    DatabaseFile(const DatabaseFile&) = delete;
    DatabaseFile& operator=(const DatabaseFile&) = delete;
    ~DatabaseFile() = default;

    [[nodiscard]] const DatabaseInfo& info() const { return info_; }

    // The entry at a reference.
    // Errors: there is no such entry, or it is damaged.
    [[nodiscard]] DatabaseEntry entryAt(const EntryReference& reference) const;

    // Errors: the checksum of the entry is wrong.
    void check(const DatabaseEntry& entry) const;

    // Throws an error that says what is wrong with the file, and which command builds it.
    [[noreturn]] void fail(const std::string& what) const;
    // The same, as DatabaseDamage.
    [[noreturn]] void failDamaged(const std::string& damage) const;

    // The position at which the hash tables begin.
    [[nodiscard]] std::uint32_t entriesEnd() const { return numberFrom(bytes(0, databasePointerSize)); }
    // Errors: the file ends before.
    [[nodiscard]] std::string_view bytes(std::uint32_t position, std::uint32_t length) const {
        if (position > mapping_.size || length > mapping_.size - position) {
            failOutside();
        }
        return {mapping_.begin + position, length};
    }
    // Lets the system take the memory of these bytes back; they can still be read.
    void release(std::uint32_t begin, std::uint32_t end) const;

private:
    friend class DatabaseSearch;
    friend class DatabaseWalk;

    struct Mapping {
        Mapping() = default;
        Mapping(const Mapping&) = delete;
        Mapping& operator=(const Mapping&) = delete;
        ~Mapping();
        const char* begin = nullptr;
        std::size_t size = 0;
    };

    [[noreturn]] void failKind(const char* orElse) const;
    [[noreturn]] void failOutside() const;
    void map();
    void checkPointers() const;
    void readInfo();
    [[noreturn]] void refuse(const std::string& what) const; // an error that a new build does not cure
    [[nodiscard]] std::string advice() const;
    [[nodiscard]] DatabaseEntry entryIn(std::string_view bytes, std::uint32_t keyLength) const;
    [[nodiscard]] DatabaseEntry checkedEntry(std::string_view bytes, std::uint32_t keyLength) const;

    std::string file_;
    const DatabaseKind* kind_;
    Mapping mapping_;
    DatabaseInfo info_;
};

// Finds the entries with one key, in the order in which they were written.
// Lifetime: the file and the key outlive the search. Threads: one.
class DatabaseSearch {
public:
    DatabaseSearch(const DatabaseFile& file, std::string_view key);
    DatabaseSearch(const DatabaseSearch&) = delete;
    DatabaseSearch& operator=(const DatabaseSearch&) = delete;

    // The next entry, or nothing after the last.
    // Errors: a damaged entry or table.
    std::optional<DatabaseEntry> next();
    // The same, without verifying its checksum.
    std::optional<DatabaseEntry> nextUnchecked();

private:
    const DatabaseFile* file_;
    std::string_view key_;
    std::uint32_t hash_ = 0;
    std::string_view table_;   // the hash table that may hold the key
    std::size_t next_ = 0;     // offset of the next slot in it
    std::uint32_t unseen_ = 0; // slots left to probe
};

// Reads all entries in the order in which they were written, without the hash tables. Memory: 16 MiB of the file at a
// time.
// Lifetime: the file outlives the walk. Threads: one.
class DatabaseWalk {
public:
    explicit DatabaseWalk(const DatabaseFile& file) : file_(&file) {}

    // The next entry, or nothing after the last.
    // Errors: a damaged entry. The next call goes on after it, or ends when the end of the entry is unknown.
    std::optional<DatabaseEntry> next();
    // Of the entry that `next` returned last or failed at.
    [[nodiscard]] std::uint32_t position() const { return position_; }

private:
    const DatabaseFile* file_;
    std::uint32_t position_ = databaseHeaderSize;
    std::uint32_t following_ = databaseHeaderSize;
    std::uint32_t released_ = 0;
};

} // namespace tessgen::standalone

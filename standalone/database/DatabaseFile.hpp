// A constant database of the host's own, opened for reading: its entries, each checked before it is handed out, unless
// that is left to the caller.
//
// The file is mapped. It may only ever be replaced, as builds do, so that what is mapped stays what it was: a program
// that has it open may end (SIGBUS) when another one writes into it or cuts it short in place.
// Threads: any, at the same time.
// Lifetime: entries are views into the file's memory.
// Errors: std::runtime_error, one line that names the file and says what to do.
#pragma once

#include "standalone/database/DatabaseFormat.hpp"

#include <cdb.h>
#include <cstdint>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>

namespace tessgen::standalone {

// What is damaged inside a file that could be opened.
class DatabaseDamage : public std::runtime_error {
public:
    DatabaseDamage(const std::string& what, std::string problem)
        : std::runtime_error(what), damage(std::move(problem)) {}

    std::string damage; // without the file and the advice
};

struct DatabaseEntry {
    std::string_view key;   // right before `value` in the file
    std::string_view value; // without its checksum, which is right behind it

    std::uint32_t checksum() const { return numberFrom({value.data() + value.size(), checksumSize}); }
};

class DatabaseFile {
public:
    // `kind` outlives it.
    // Errors: no such file, not a regular file, not of that kind, another version, cut short.
    DatabaseFile(std::string file, const DatabaseKind& kind);
    DatabaseFile(const DatabaseFile&) = delete;
    DatabaseFile& operator=(const DatabaseFile&) = delete;
    ~DatabaseFile() = default;

    const DatabaseInfo& info() const { return info_; }

    // The entry that a reference leads to.
    // Errors: there is no such entry, or it is damaged.
    DatabaseEntry entryAt(const EntryReference& reference) const;

    // Errors: the checksum of the entry is wrong.
    void check(const DatabaseEntry& entry) const;

    // Throws an error that says what is wrong with the file and how to get a good one.
    [[noreturn]] void fail(const std::string& what) const;
    // The same, as DatabaseDamage.
    [[noreturn]] void failDamaged(const std::string& damage) const;

    // What lies between the slots and the hash tables ends there.
    std::uint32_t entriesEnd() const { return numberFrom(bytes(0, databaseSlotSize)); }
    // Errors: the file ends before.
    std::string_view bytes(std::uint32_t position, std::uint32_t length) const {
        const std::string_view all(reinterpret_cast<const char*>(mapping_.database.cdb_mem),
                                   mapping_.database.cdb_fsize);
        if (position > all.size() || length > all.size() - position) {
            failOutside();
        }
        return all.substr(position, length);
    }
    // Says that these bytes will hardly be asked for again, so that the system may take their memory back.
    void release(std::uint32_t begin, std::uint32_t end) const;

private:
    friend class DatabaseSearch;
    friend class DatabaseWalk;

    struct Mapping {
        Mapping() = default;
        Mapping(const Mapping&) = delete;
        Mapping& operator=(const Mapping&) = delete;
        ~Mapping() { cdb_free(&database); }
        struct cdb database {};
    };

    [[noreturn]] void failOutside() const;
    void map();
    void checkTableSlots(std::uint64_t fileSize) const;
    void readInfo();
    [[noreturn]] void refuse(const std::string& what) const; // a new build would not help
    std::string advice() const;
    DatabaseEntry entryIn(std::string_view bytes, std::uint32_t keyLength) const;
    DatabaseEntry checkedEntry(std::string_view bytes, std::uint32_t keyLength) const;

    std::string file_;
    const DatabaseKind* kind_;
    Mapping mapping_;
    DatabaseInfo info_;
};

// Finds the entries of one key, in the order in which they were written.
// Lifetime: the file and the key outlive the search. Threads: one.
class DatabaseSearch {
public:
    DatabaseSearch(const DatabaseFile& file, std::string_view key);
    DatabaseSearch(const DatabaseSearch&) = delete;
    DatabaseSearch& operator=(const DatabaseSearch&) = delete;

    // The next entry, or nothing after the last.
    // Errors: a damaged entry or table.
    std::optional<DatabaseEntry> next();
    // The same, without a look at its checksum.
    std::optional<DatabaseEntry> nextUnchecked();

private:
    const DatabaseFile* file_;
    std::string_view key_;
    std::uint32_t hash_ = 0;
    std::string_view table_;   // the hash table that may lead to the key
    std::size_t place_ = 0;    // where in it the next one to look at begins
    std::uint32_t unseen_ = 0; // how many places are still to be looked at
};

// Goes through all entries in the order in which they were written, without the hash tables. Memory: 16 MiB of the
// file at a time.
// Lifetime: the file outlives the walk. Threads: one.
class DatabaseWalk {
public:
    explicit DatabaseWalk(const DatabaseFile& file) : file_(&file) {}

    // The next entry, or nothing after the last.
    // Errors: a damaged entry. The next call goes on behind it; where that is not known, there is no next.
    std::optional<DatabaseEntry> next();
    // Where the entry that `next` handed out last, or threw at, begins.
    std::uint32_t position() const { return position_; }

private:
    const DatabaseFile* file_;
    std::uint32_t position_ = databaseHeaderSize;
    std::uint32_t following_ = databaseHeaderSize;
    std::uint32_t released_ = 0;
};

} // namespace tessgen::standalone

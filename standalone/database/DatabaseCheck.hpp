// Whether a whole constant database of the host's own is as a build wrote it: every byte counts, also those that no
// look-up meets.
//
// Threads: one. Memory: that of the hash tables.
#pragma once

#include "standalone/database/DatabaseFile.hpp"
#include "standalone/database/DatabaseTables.hpp"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace tessgen::standalone {

struct DatabaseCheck {
    std::uint64_t records = 0;         // that are whole
    std::uint64_t damages = 0;         // 0: the file is whole
    std::vector<std::string> findings; // one line for each of the first ten, in the order of the file
};

// What every kind of file has in common; a kind of its own says what its entries are.
class DatabaseChecker {
public:
    // Lifetime: the file outlives the checker.
    explicit DatabaseChecker(const DatabaseFile& file) : file_(file), walk_(file) {}
    DatabaseChecker(const DatabaseChecker&) = delete;
    DatabaseChecker& operator=(const DatabaseChecker&) = delete;
    virtual ~DatabaseChecker() = default;

    // Goes through every entry, and every place of the hash tables. To be called once.
    DatabaseCheck run();

protected:
    // Looks at an entry whose checksum is right, other than the one about the file; true when it is a whole record.
    virtual bool checkEntry(const DatabaseEntry& entry) = 0;
    // The entry about the file is looked at, after others without a finding.
    virtual void checkInfo() {}
    // The entry at the walk's place is damaged.
    virtual void passOverDamage() {}
    // True when the entries seen may be all.
    virtual bool isComplete() const { return true; }

    const DatabaseFile& file() const { return file_; }
    // Where the entry lies that is looked at.
    std::uint32_t position() const { return walk_.position(); }
    // A finding at that entry unless `isSo`.
    bool expect(bool isSo, const std::string& damage);

private:
    void checkEntries();
    void checkOne(const DatabaseEntry& entry);
    void checkTables();
    void compare(std::uint32_t position, std::string_view written);
    void find(std::uint32_t position, const std::string& damage);

    const DatabaseFile& file_;
    DatabaseWalk walk_;
    DatabaseTables tables_;
    bool infoSeen_ = false; // the entry about the file, which is the last
    DatabaseCheck check_;
};

} // namespace tessgen::standalone

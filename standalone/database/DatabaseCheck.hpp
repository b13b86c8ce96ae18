// Whether a constant database is, byte for byte, what a build wrote, the bytes included that no look-up meets.
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
    std::uint64_t records = 0;         // undamaged ones
    std::uint64_t damages = 0;         // 0: the file is undamaged
    std::vector<std::string> findings; // one line for each of the first ten damages, in the order of the file
};

// Checks what every kind of file has in common; a derived class knows the entries of its kind.
class DatabaseChecker {
public:
    // Lifetime: the file outlives the checker.
    explicit DatabaseChecker(const DatabaseFile& file) : file_(file), walk_(file) {}
    DatabaseChecker(const DatabaseChecker&) = delete;
    DatabaseChecker& operator=(const DatabaseChecker&) = delete;
    virtual ~DatabaseChecker();

    // Checks every entry and every slot of the hash tables. To be called once.
    [[nodiscard]] DatabaseCheck run();

protected:
    // Checks an entry whose checksum is right, except the one that describes the file. True when it is an undamaged
    // record.
    virtual bool checkEntry(const DatabaseEntry& entry) = 0;
    // Checks the entry that describes the file; called when no damage was found before it.
    virtual void checkInfo() {}
    // Notes that the entry at `position` is damaged.
    virtual void passOverDamage() {}
    // Whether the entries so far may be all.
    [[nodiscard]] virtual bool isComplete() const { return true; }

    [[nodiscard]] const DatabaseFile& file() const { return file_; }
    // Of the entry that is being checked.
    [[nodiscard]] std::uint32_t position() const { return walk_.position(); }
    // Reports `damage` at that entry unless `isSo`. Returns `isSo`.
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
    bool infoSeen_ = false; // the entry that describes the file: the last one
    DatabaseCheck check_;
};

} // namespace tessgen::standalone

#include "standalone/database/DatabaseCheck.hpp"

#include <algorithm>
#include <cstddef>
#include <utility>

namespace tessgen::standalone {

DatabaseChecker::~DatabaseChecker() = default;

DatabaseCheck DatabaseChecker::run() {
    checkEntries();
    if (check_.damages == 0) { // otherwise the right tables are unknown
        checkTables();
    }
    return std::move(check_);
}

void DatabaseChecker::checkEntries() {
    bool more = true;
    while (more) {
        try {
            const auto entry = walk_.next();
            more = entry.has_value();
            if (more) {
                tables_.add(entry->key, walk_.position());
                checkOne(*entry);
            }
        } catch (const DatabaseDamage& error) {
            find(walk_.position(), error.damage);
            passOverDamage();
        }
    }
    if (check_.damages == 0) {
        expect(infoSeen_ && isComplete(), "entries are missing behind this one");
        expect(check_.records == file_.info().records, "there are " + std::to_string(check_.records) + " records where "
                                                           + std::to_string(file_.info().records) + " were written");
    }
}

void DatabaseChecker::checkOne(const DatabaseEntry& entry) {
    if (entry.key == databaseInfoKey) {
        expect(!std::exchange(infoSeen_, true), "duplicate file header entry");
        if (check_.damages == 0) {
            checkInfo();
        }
    } else {
        expect(!infoSeen_, "there is an entry after the last one");
        check_.records += checkEntry(entry) ? 1U : 0U;
    }
}

void DatabaseChecker::checkTables() {
    const auto pointers = tables_.pointers(file_.entriesEnd());
    compare(0, pointers);
    for (std::size_t index = 0; index < DatabaseTables::count && check_.damages == 0; ++index) {
        compare(numberFrom(std::string_view(pointers).substr(index * databasePointerSize)), tables_.table(index));
    }
}

void DatabaseChecker::compare(std::uint32_t position, std::string_view written) {
    const auto found = file_.bytes(position, static_cast<std::uint32_t>(written.size()));
    const auto [there, as] = std::mismatch(found.begin(), found.end(), written.begin());
    if (there != found.end()) {
        find(position + static_cast<std::uint32_t>(there - found.begin()),
             "the hash tables do not lead to the entries");
    }
}

bool DatabaseChecker::expect(bool isSo, const std::string& damage) {
    if (!isSo) {
        find(position(), damage);
    }
    return isSo;
}

void DatabaseChecker::find(std::uint32_t position, const std::string& damage) {
    constexpr std::size_t most = 10;
    if (++check_.damages <= most) {
        check_.findings.push_back("byte " + std::to_string(position) + ": " + damage);
    }
}

} // namespace tessgen::standalone

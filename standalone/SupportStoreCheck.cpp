#include "standalone/SupportStoreCheck.hpp"

#include "standalone/SupportStoreFile.hpp"
#include "standalone/SupportStoreTables.hpp"
#include "standalone/Text.hpp"

#include <algorithm>
#include <deque>
#include <optional>
#include <utility>

namespace tessgen::standalone {

namespace {

bool isText(const std::u16string& text) {
    return !text.empty() && toUTF8(text).has_value();
}

bool areTexts(const std::vector<std::u16string>& texts) {
    return std::all_of(texts.begin(), texts.end(), isText);
}

class Checker {
public:
    explicit Checker(const std::string& file) : file_(file), walk_(file_) {}

    StoreCheck run() {
        checkEntries();
        if (check_.damages == 0) { // else the tables cannot be known
            checkTables();
        }
        return std::move(check_);
    }

private:
    void checkEntries() {
        bool more = true;
        while (more) {
            try {
                const auto entry = walk_.next();
                more = entry.has_value();
                if (more) {
                    tables_.add(entry->key, walk_.position());
                    checkPlaceOf(*entry);
                }
            } catch (const StoreDamage& error) {
                find(walk_.position(), error.damage);
                due_.clear();
                lost_ = true;
            }
        }
        if (check_.damages == 0) {
            expect(due_.empty() && infoSeen_, "entries are missing behind this one");
            expect(check_.records == file_.info().records,
                   "there are " + std::to_string(check_.records) + " records where "
                       + std::to_string(file_.info().records) + " were written");
        }
    }

    // A build writes a record, then an entry for each of its names, and after all records what is about the store.
    void checkPlaceOf(const StoreEntry& entry) {
        if (!due_.empty()) {
            const auto& [key, value] = due_.front();
            expect(entry.key == key && entry.value == value,
                   "this is not the entry for the name of the record before it");
            due_.pop_front();
        } else if (isRecord(entry.key)) {
            expect(!infoSeen_, "there is a record after the last one");
            lost_ = !checkRecord(entry);
        } else if (entry.key == encodeKey(EntryKind::info)) {
            expect(!std::exchange(infoSeen_, true), "what is about the store is there twice");
        } else {
            expect(lost_, "no record needs this entry");
        }
    }

    // Whether it tells which entries come next.
    bool checkRecord(const StoreEntry& entry) {
        const auto record = decodeRecord(entry.key, entry.value);
        if (!record || !isText(record->entry.path) || !isText(record->entry.symbol) || !areTexts(record->names)
            || !areTexts(record->entry.unsupportedSymbols)) {
            find(walk_.position(), "no build writes such a record");
            return false;
        }
        ++check_.records;
        const auto length = static_cast<std::uint32_t>(entry.key.size() + entry.value.size() + checksumSize);
        const auto reference = encodeReference({walk_.position(), length, entry.checksum});
        for (const auto& name : record->names) {
            due_.emplace_back(encodeKey(EntryKind::name, name), reference);
        }
        if (!record->entry.isBuiltin) {
            const auto found = StoreSearch(file_, std::string(entry.key)).next();
            expect(found && found->key.data() == entry.key.data(), "the record of a file is not found by its path");
        }
        return true;
    }

    void checkTables() {
        const auto slots = tables_.slots(file_.entriesEnd());
        compare(0, slots);
        for (std::size_t index = 0; index < SupportStoreTables::count && check_.damages == 0; ++index) {
            compare(numberFrom(std::string_view(slots).substr(index * databaseSlotSize)), tables_.table(index));
        }
    }

    void compare(std::uint32_t position, std::string_view written) {
        const auto found = file_.bytes(position, static_cast<std::uint32_t>(written.size()));
        const auto [there, as] = std::mismatch(found.begin(), found.end(), written.begin());
        if (there != found.end()) {
            find(position + static_cast<std::uint32_t>(there - found.begin()),
                 "the hash tables do not lead to the entries");
        }
    }

    // Of the entry that the walk is at.
    void expect(bool isSo, const std::string& damage) {
        if (!isSo) {
            find(walk_.position(), damage);
        }
    }

    void find(std::uint32_t position, const std::string& damage) {
        constexpr std::size_t most = 10;
        if (++check_.damages <= most) {
            check_.findings.push_back("byte " + std::to_string(position) + ": " + damage);
        }
    }

    SupportStoreFile file_;
    StoreWalk walk_;
    SupportStoreTables tables_;
    std::deque<std::pair<std::string, std::string>> due_; // the name entries that must come next: key and value
    bool lost_ = false;     // the record before was damaged, so that its names are not known
    bool infoSeen_ = false; // the entry about the store, which is the last
    StoreCheck check_;
};

} // namespace

StoreCheck checkSupportStore(const std::string& file) {
    return Checker(file).run();
}

} // namespace tessgen::standalone

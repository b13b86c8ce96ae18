#include "standalone/store/SupportStoreCheck.hpp"

#include "standalone/store/SupportStoreFormat.hpp"
#include "standalone/text/Text.hpp"

#include <algorithm>
#include <deque>
#include <utility>
#include <vector>

namespace tessgen::standalone {

namespace {

bool isText(const std::u16string& text) {
    return !text.empty() && toUTF8(text).has_value();
}

bool areTexts(const std::vector<std::u16string>& texts) {
    return std::all_of(texts.begin(), texts.end(), isText);
}

class StoreChecker final : public DatabaseChecker {
public:
    using DatabaseChecker::DatabaseChecker;

private:
    // A build writes a record, then an entry for each of its names.
    bool checkEntry(const DatabaseEntry& entry) override {
        if (!due_.empty()) {
            const auto& [key, value] = due_.front();
            expect(entry.key == key && entry.value == value,
                   "this is not the entry for the name of the record before it");
            due_.pop_front();
            return false;
        }
        if (!isRecord(entry.key)) {
            expect(namesUnknown_, "no record needs this entry");
            return false;
        }
        namesUnknown_ = !checkRecord(entry);
        return !namesUnknown_;
    }

    void passOverDamage() override {
        due_.clear();
        namesUnknown_ = true;
    }

    void checkInfo() override {
        expect(file().info().commonPrefix == prefix_.text(), "this is not the common prefix of the paths");
    }

    [[nodiscard]] bool isComplete() const override { return due_.empty(); }

    // False when the names of the record are unknown, and so the entries that must come next.
    bool checkRecord(const DatabaseEntry& entry) {
        const auto record = decodeRecord(entry.key, entry.value);
        const bool isWhole = record && isText(record->entry.path) && isText(record->entry.symbol)
                             && areTexts(record->names) && areTexts(record->entry.unsupportedSymbols);
        if (!expect(isWhole, "no build writes such a record")) {
            return false;
        }
        const auto length = static_cast<std::uint32_t>(entry.key.size() + entry.value.size() + checksumSize);
        const auto reference = encodeReference({position(), length, entry.checksum()});
        for (const auto& name : record->names) {
            due_.emplace_back(encodeKey(EntryKind::name, name), reference);
        }
        if (!record->entry.isBuiltin) {
            const auto found = DatabaseSearch(file(), entry.key).next();
            prefix_.add(record->entry.path);
            expect(found && found->key.data() == entry.key.data(), "the record of a file is not found by its path");
        }
        return true;
    }

    std::deque<std::pair<std::string, std::string>> due_; // the name entries that must come next: key and value
    CommonPrefix prefix_;                                 // of the files so far
    bool namesUnknown_ = false;                           // the last record was damaged
};

} // namespace

DatabaseCheck checkSupportStore(const std::string& file) {
    const DatabaseFile opened(file, supportStoreKind);
    return StoreChecker(opened).run();
}

} // namespace tessgen::standalone

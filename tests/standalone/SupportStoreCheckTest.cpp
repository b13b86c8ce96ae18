#include "standalone/store/SupportStoreCheck.hpp"

#include "standalone/store/SupportStoreFormat.hpp"
#include "tests/support/StoreDatabases.hpp"
#include "tests/support/SupportStores.hpp"

#include <gtest/gtest.h>

namespace tessgen::standalone {

namespace {

using test::Entries;
using test::TemporaryFolder;
using test::withChecksum;

// The entries of a store, in their order, with their checksums.
Entries entriesOf(const std::string& store) {
    const DatabaseFile file(store, supportStoreKind);
    DatabaseWalk walk(file);
    Entries entries;
    while (const auto entry = walk.next()) {
        entries.push_back(withChecksum(std::string(entry->key), std::string(entry->value)));
    }
    return entries;
}

// The format's own library puts every entry into the same slot, however many have one key.
TEST(DatabaseTables, AreThoseOfTheFormatsOwnLibrary) {
    std::string lines = test::recordsOfEveryForm;
    for (int i = 0; i < 3000; ++i) {
        const auto number = std::to_string(i);
        lines += R"({"path": "many/f)" + number + R"(.vk", "name": ["same", "f)" + number + "\"]}\n";
    }
    const TemporaryFolder folder;
    const auto store = buildStore(folder, lines);
    EXPECT_EQ(checkSupportStore(store).records, 3008);
    EXPECT_EQ(checkSupportStore(store).damages, 0);
    EXPECT_EQ(test::contentOf(writeDatabase(folder, entriesOf(store))), test::contentOf(store));
}

// A store of two files and a built-in, of which `change` has changed something whose checksum is right all the same.
template <typename Change>
std::vector<std::string> findingsAfter(const Change& change) {
    const TemporaryFolder folder;
    auto entries = entriesOf(buildStore(folder, R"({"path": "/w/f.vk", "name": ["f", "g"]}
{"path": "/w/g.vk"}
{"path": "sum", "builtin": true})"));
    change(entries);
    return checkSupportStore(writeDatabase(folder, entries)).findings;
}

TEST(SupportStoreCheck, FindsWhatNoBuildWrites) {
    enum Place { fileF, nameF, nameG, fileG, nameGOfG, builtin, nameSum, info };
    EXPECT_EQ(findingsAfter([](Entries& entries) { EXPECT_EQ(entries.size(), info + 1); }), std::vector<std::string>{});
    const auto withRecord = [](std::u16string_view symbol, const std::vector<std::u16string>& names) {
        return [=](Entries& e) {
            e[fileG] =
                withChecksum(e[fileG].first, encodeRecord({{{}, false, false, std::u16string(symbol), {}, {}}, names}));
        };
    };
    const auto withInfo = [](std::uint32_t records, std::u16string_view prefix) {
        return [=](Entries& e) {
            e[info] = withChecksum(e[info].first, encodeInfo({std::u16string(storeMagic), storeVersion, records,
                                                              u"/opt/orvak", std::u16string(prefix)}));
        };
    };
    const std::vector<std::pair<std::string, std::function<void(Entries&)>>> cases = {
        {"is not the entry for the name", [](Entries& e) { std::swap(e[nameF], e[nameG]); }},
        {"is not the entry for the name", [](Entries& e) { std::swap(e[nameG], e[nameGOfG]); }},
        {"no record needs this entry", [](Entries& e) { e.insert(e.begin() + fileG, e[nameG]); }},
        {"no record needs this entry", [](Entries& e) { e.erase(e.begin()); }},
        {"an entry after the last one", [](Entries& e) { e.push_back(withChecksum("X", "")); }},
        {"an entry after the last one",
         [](Entries& e) { std::rotate(e.begin() + builtin, e.begin() + info, e.end()); }},
        {"duplicate file header entry", [](Entries& e) { e.push_back(e[info]); }},
        {"is not found by its path", [](Entries& e) { e[fileG] = e[fileF]; }},
        {"there are 3 records where 4 were", withInfo(4, u"/w/")},
        {"is not the common prefix", withInfo(3, u"/w/f")},
        {"is not the common prefix", withInfo(3, u"/w")},
        {"no build writes such a record", withRecord(u"g", {})},
        {"no build writes such a record", withRecord(u"", {u"g"})},
        {"no build writes such a record", withRecord(u"g", {u"\xD800"})},
        {"the checksum of an entry is wrong", [](Entries& e) { e[nameSum].second.back() ^= 1; }},
        {"an entry is too short", [](Entries& e) { e[nameSum].second = ""; }},
    };
    for (const auto& [expected, change] : cases) {
        const auto findings = findingsAfter(change);
        ASSERT_FALSE(findings.empty()) << expected;
        EXPECT_NE(findings.front().find(expected), std::string::npos) << expected << ", found " << findings.front();
    }
}

// The tables fill the file as they should, and yet one has the slots of another.
TEST(SupportStoreCheck, FindsSlotsThatAreInAnotherTable) {
    const TemporaryFolder folder;
    auto content = test::contentOf(buildStore(folder, test::recordsOfEveryForm));
    std::size_t pointer = 0;
    while (numberFrom(std::string_view(content).substr(pointer + databasePointerSize + 4)) == 0) {
        pointer += databasePointerSize;
    }
    const auto slots = numberFrom(std::string_view(content).substr(pointer + 4));
    const auto next = std::string_view(content).substr(pointer + databasePointerSize);
    const auto both = slots + numberFrom(next.substr(4));
    const auto end = numberFrom(next) + (both - slots) * databaseSlotSize;
    content.replace(pointer + 4, 12, encodeNumber(both) + encodeNumber(end) + encodeNumber(0));
    const auto file = folder.write("moved.cdb", content);
    EXPECT_EQ(test::openingError(file), "no error");
    EXPECT_EQ(checkSupportStore(file).findings,
              std::vector{"byte " + std::to_string(pointer + 4) + ": the hash tables do not lead to the entries"});
}

} // namespace

} // namespace tessgen::standalone

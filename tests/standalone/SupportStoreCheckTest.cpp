#include "standalone/store/SupportStoreCheck.hpp"

#include "standalone/store/SupportStoreFormat.hpp"
#include "tests/support/StoreDatabases.hpp"
#include "tests/support/SupportStores.hpp"

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <utility>
#include <vector>

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

// A store of two files and a built-in, of which something was changed whose checksum is right all the same: no build
// writes it, and a check finds it.
struct Change {
    std::string finding; // ends the first one
    std::function<void(Entries&)> make;
    std::string damaged = {}; // a name or path that this must be an error to
};

enum Place { fileF, nameF, nameG, fileG, nameGOfG, builtin, nameSum, info };

std::string contentOf(const Entries::value_type& entry) {
    return entry.second.substr(0, entry.second.size() - checksumSize);
}

auto withValue(const std::function<std::string(const std::string&)>& make) {
    return [=](Entries& e) { e[fileG] = withChecksum(e[fileG].first, make(contentOf(e[fileG]))); };
}

auto withRecord(std::u16string_view symbol, const std::vector<std::u16string>& names) {
    return withValue([=](const std::string& /*value*/) {
        return encodeRecord({{{}, false, false, std::u16string(symbol), {}, {}}, names});
    });
}

auto withInfo(std::uint32_t records, std::u16string_view prefix) {
    return [=](Entries& e) {
        e[info] = withChecksum(e[info].first, encodeInfo({std::u16string(storeMagic), storeVersion, records,
                                                          u"/opt/orvak", std::u16string(prefix)}));
    };
}

auto withReference(const std::function<void(EntryReference&)>& change) {
    return [=](Entries& e) {
        auto reference = decodeReference(contentOf(e[nameF])).value();
        change(reference);
        e[nameF] = withChecksum(e[nameF].first, encodeReference(reference));
    };
}

// The reference to the file leads to an entry for a name.
void makeFileAName(Entries& e) {
    e[fileF] = withChecksum(encodeKey(EntryKind::name, u"/w/f.vk"), contentOf(e[fileF]));
    const auto checksum = numberFrom(std::string_view(e[fileF].second).substr(contentOf(e[fileF]).size()));
    withReference([=](EntryReference& reference) { reference.checksum = checksum; })(e);
}

const std::string zero = encodeNumber(0);
const std::string huge = encodeNumber(0xFFFFFFFF);

const std::vector<Change> changes = {
    {"is not the entry for the name of the record before it", [](Entries& e) { std::swap(e[nameF], e[nameG]); }},
    {"is not the entry for the name of the record before it", [](Entries& e) { std::swap(e[nameG], e[nameGOfG]); }},
    {"is not the entry for the name of the record before it", [](Entries& e) { e.insert(e.begin() + nameF, e[nameF]); },
     "f"},
    {"is not the entry for the name of the record before it", withReference([](auto& r) { --r.length; }), "f"},
    {"is not the entry for the name of the record before it", withReference([](auto& r) { ++r.checksum; }), "f"},
    {"is not the entry for the name of the record before it", withReference([](auto& r) { r.position = ~0U; }), "f"},
    {"no record needs this entry", makeFileAName, "f"},
    {"no record needs this entry", [](Entries& e) { e.insert(e.begin() + fileG, e[nameG]); }},
    {"no record needs this entry", [](Entries& e) { e.erase(e.begin()); }},
    {"an entry after the last one", [](Entries& e) { e.push_back(withChecksum("X", "")); }},
    {"an entry after the last one", [](Entries& e) { std::rotate(e.begin() + builtin, e.begin() + info, e.end()); }},
    {"duplicate file header entry", [](Entries& e) { e.push_back(e[info]); }},
    {"the record of a file is not found by its path", [](Entries& e) { e[fileG] = e[fileF]; }},
    {"there are 3 records where 4 were written", withInfo(4, u"/w/")},
    {"this is not the common prefix of the paths", withInfo(3, u"/w/f")},
    {"this is not the common prefix of the paths", withInfo(3, u"/w")},
    {"no build writes such a record", withRecord(u"g", {})},
    {"no build writes such a record", withRecord(u"", {u"g"})},
    {"no build writes such a record", withRecord(u"g", {u"\xD800"})},
    {"no build writes such a record", // half a code unit
     [](Entries& e) { e[fileG] = withChecksum(e[fileG].first + "x", contentOf(e[fileG])); }},
    {"no build writes such a record", withValue([](auto& value) { return value + '\0'; }), "/w/g.vk"},
    {"no build writes such a record", withValue([](auto& value) { return value.substr(1); }), "/w/g.vk"},
    {"no build writes such a record", // a flag that does not exist
     withValue([](auto& value) { return encodeNumber(128) + value.substr(4); }), "/w/g.vk"},
    {"no build writes such a record", withValue([](auto&) { return zero + huge; }), "/w/g.vk"}, // a text of 8 GiB
    {"no build writes such a record", withValue([](auto&) { return zero + zero + huge; }), "/w/g.vk"}, // 4 Gi texts
    {"the checksum of an entry is wrong", [](Entries& e) { e[nameSum].second.back() ^= 1; }},
    {"an entry is too short", [](Entries& e) { e[nameSum].second = ""; }},
};

TEST(SupportStoreCheck, FindsWhatNoBuildWrites) {
    const TemporaryFolder folder;
    const auto whole = entriesOf(buildStore(folder, R"({"path": "/w/f.vk", "name": ["f", "g"]}
{"path": "/w/g.vk"}
{"path": "sum", "builtin": true})"));
    EXPECT_EQ(checkSupportStore(writeDatabase(folder, whole)).findings, std::vector<std::string>());
    for (std::size_t i = 0; i < changes.size(); ++i) {
        const auto& [finding, make, damaged] = changes[i];
        auto entries = whole;
        make(entries);
        const auto file = writeDatabase(folder, entries);
        const auto findings = checkSupportStore(file).findings;
        ASSERT_FALSE(findings.empty()) << i;
        EXPECT_TRUE(findings.front().ends_with(finding)) << i << ": " << findings.front();
        const auto error = test::errorOf([&file, &text = damaged] {
            const SupportStore store(file, test::storeRoot);
            static_cast<void>(text.starts_with('/') ? store.findByPath(toUTF16(text).value()).has_value()
                                                    : store.findBySymbol(toUTF16(text).value()).empty());
        });
        EXPECT_EQ(error.find("is damaged") != std::string::npos, !damaged.empty()) << i << ": " << error;
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
